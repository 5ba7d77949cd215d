#include "core/facade/MetaTypes.h"

#include <memory>
#include <string>

#include <QMetaType>

#include "core/data/ChannelData.h"
#include "core/messages/ChannelAmountChanged.h"

MetaTypes::MetaTypes() {
    qRegisterMetaType<std::size_t>("std::size_t"); // another name of a type of Qt's own
    add<std::string>("std::string");
    add<sonvex::ChannelData>("sonvex::ChannelData");
    add<std::shared_ptr<sonvex::BaseMessage>>("std::shared_ptr<sonvex::BaseMessage>");
    add<std::shared_ptr<sonvex::ChannelAmountChanged>>("std::shared_ptr<sonvex::ChannelAmountChanged");
}

MetaTypes::~MetaTypes() {
    for (const int type : own) {
        QMetaType::unregisterType(type);
    }
}

template <class Type>
void MetaTypes::add(const char *name) {
    const bool known = QMetaType::isRegistered(QMetaType::type(name));
    const int type = qRegisterMetaType<Type>(name);
    if (!known) {
        own.push_back(type);
    }
}
