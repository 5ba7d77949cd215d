#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <QTimer>

#include "analyser/AnalyserOptions.h"
#include "analyser/output/Ending.h"
#include "monitoring/Delivery.h"
#include "monitoring/Session.h"

namespace analyser {

class LiveView;
class Output;

/// The command monitor: joins a session and its listeners, from the first frame to the summary.
class Monitor {
public:
    /// @throws common::Refusal if the options don't fit the machine
    explicit Monitor(const MonitorOptions &options);
    ~Monitor();
    Monitor(const Monitor &) = delete;
    Monitor &operator=(const Monitor &) = delete;

    /// Runs until the time is over or the user ends it. @return the exit status
    int run();

private:
    void refuseSharedFiles() const;
    void addListener(std::size_t index);
    /// On any thread.
    void quit();
    void tick();
    void say(const monitoring::Status &status);
    /// Runs the view's function on its thread.
    void onScreen(void (LiveView::*function)());
    template <class Item>
    void post(const std::shared_ptr<const Item> &item) {
        for (const auto &delivery : deliveries) {
            delivery->post(item);
        }
    }
    int finish();
    void endListeners();
    int report() const;

    const MonitorOptions &options;
    monitoring::SessionSettings settings; ///< of the session; nobody reads them before they are complete
    const std::shared_ptr<Ending> ending;
    std::vector<std::shared_ptr<Output>> outputs; ///< one for each of the deliveries
    bool hasScreen = false;
    LiveView *view = nullptr; ///< of the first delivery, if it has a screen
    std::vector<std::unique_ptr<monitoring::Delivery>> deliveries;
    QTimer ticker;
    std::vector<monitoring::Condition> said;    ///< at the last tick
    std::optional<monitoring::Session> session; ///< last: its end hands things over to all of the above
};

} // namespace analyser
