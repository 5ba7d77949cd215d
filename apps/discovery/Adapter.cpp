#include "discovery/Adapter.h"

#include <utility>

#include <pcap/pcap.h>
#include <poll.h>

#include "common/Refusal.h"
#include "common/rawSocketRemedy.h"

namespace discovery {

namespace {

constexpr int snapLength = 2048;               // all of a reservation frame
constexpr int ringSize = 16 << 20;             // bytes: what comes within 50 ms
constexpr int retirement = 10;                 // ms until the kernel hands over what is there
constexpr int framesAtOnce = 4096;             // before time and signals are looked at again
constexpr std::int64_t second = 1'000'000'000; // ns

// Fixed places rather than the word "vlan". The kernel takes the outer tag off before it asks, except from frames that
// this machine sends; so a tag may stand in the bytes here or not. Frames with two tags pass, to be counted.
constexpr char wanted[] = "ether[12:2] = 0x22f0 or ether[12:2] = 0x22ea"
                          " or ((ether[12:2] = 0x8100 or ether[12:2] = 0x88a8 or ether[12:2] = 0x9100)"
                          " and (ether[16:2] = 0x22f0 or ether[16:2] = 0x22ea"
                          " or (ether[16:2] = 0x8100 and (ether[20:2] = 0x22f0 or ether[20:2] = 0x22ea))))";

/// @throws common::Refusal unless the adapter is there
const std::string &known(const std::string &name) {
    pcap_if_t *first = nullptr;
    char error[PCAP_ERRBUF_SIZE] = "";
    if (pcap_findalldevs(&first, error) != 0) {
        throw common::Refusal("cannot list the adapters: " + std::string(error), common::Refusal::failure);
    }
    const std::unique_ptr<pcap_if_t, decltype(&pcap_freealldevs)> list(first, pcap_freealldevs);
    std::string names;
    for (const pcap_if_t *device = first; device != nullptr; device = device->next) {
        if (name == device->name) {
            return name;
        }
        names += (names.empty() ? "" : ", ") + std::string(device->name);
    }
    throw common::Refusal("there is no adapter '" + name + "'; known are: " + (names.empty() ? "none" : names));
}

pcap_t *create(const std::string &name) {
    char error[PCAP_ERRBUF_SIZE] = "";
    pcap_t *handle = pcap_create(name.c_str(), error);
    if (handle == nullptr) {
        throw common::Refusal("cannot open the adapter '" + name + "': " + error, common::Refusal::failure);
    }
    return handle;
}

} // namespace

Adapter::Adapter(std::string newName) : name(std::move(newName)), handle(create(known(name)), pcap_close) {
    activate();
    filter();
}

Adapter::~Adapter() = default;

void Adapter::activate() {
    pcap_set_snaplen(handle.get(), snapLength);
    pcap_set_promisc(handle.get(), 1);
    pcap_set_timeout(handle.get(), retirement);
    pcap_set_buffer_size(handle.get(), ringSize);
    pcap_set_tstamp_precision(handle.get(), PCAP_TSTAMP_PRECISION_NANO);
    const std::string refusal = "cannot open the adapter '" + name + "': ";
    const int status = pcap_activate(handle.get());
    if (status < 0) {
        std::string cause = pcap_geterr(handle.get());
        if (cause.empty()) {
            cause = pcap_statustostr(status);
        }
        if (status == PCAP_ERROR_PERM_DENIED || status == PCAP_ERROR_PROMISC_PERM_DENIED) {
            cause += common::rawSocketRemedy;
        } else if (status == PCAP_ERROR_IFACE_NOT_UP) {
            cause += "; the adapter is down: 'sudo ip link set " + name + " up' brings it up";
        }
        throw common::Refusal(refusal + cause, common::Refusal::failure);
    }
    if (const int type = pcap_datalink(handle.get()); type != DLT_EN10MB) {
        const char *description = pcap_datalink_val_to_description(type);
        throw common::Refusal(refusal + "it has no Ethernet frames (" +
                                  (description != nullptr ? description : "another type of link") +
                                  "); streams are heard at an Ethernet adapter of its own",
                              common::Refusal::failure);
    }
    char error[PCAP_ERRBUF_SIZE] = "";
    if (pcap_setnonblock(handle.get(), 1, error) != 0) {
        throw common::Refusal(refusal + error, common::Refusal::failure);
    }
}

void Adapter::filter() {
    bpf_program program{};
    const bool set = pcap_compile(handle.get(), &program, wanted, 1, PCAP_NETMASK_UNKNOWN) == 0 &&
                     pcap_setfilter(handle.get(), &program) == 0;
    pcap_freecode(&program);
    if (!set) {
        throw common::Refusal("cannot filter the frames of the adapter '" + name + "': " + pcap_geterr(handle.get()),
                              common::Refusal::failure);
    }
}

void Adapter::receive(int milliseconds, const Receiver &receiver) {
    pollfd frames{pcap_get_selectable_fd(handle.get()), POLLIN, 0};
    (void)::poll(&frames, 1, milliseconds);
    const auto handOver = [](u_char *user, const pcap_pkthdr *header, const u_char *bytes) {
        const std::int64_t time =
            header->ts.tv_sec * second + header->ts.tv_usec; // of nanoseconds, in spite of its name
        (*reinterpret_cast<const Receiver *>(user))({bytes, header->caplen}, header->len, time);
    };
    void *const user = const_cast<Receiver *>(&receiver);
    if (pcap_dispatch(handle.get(), framesAtOnce, handOver, static_cast<u_char *>(user)) < 0) {
        throw common::Refusal("the adapter '" + name + "' fails: " + pcap_geterr(handle.get()),
                              common::Refusal::failure);
    }
}

std::uint64_t Adapter::drops() const {
    pcap_stat statistics{};
    return pcap_stats(handle.get(), &statistics) == 0 ? statistics.ps_drop : 0;
}

} // namespace discovery
