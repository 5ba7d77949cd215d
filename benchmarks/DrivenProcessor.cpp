#include "DrivenProcessor.h"

#include <utility>

DrivenProcessor::DrivenProcessor(process::Processor *processor, const avb::AvbAudioBuffer &buffer,
                                 std::size_t sampleAmount, std::function<void(sonvex::ChannelData)> receive)
    : processor(processor), sampleAmount(sampleAmount) {
    QObject::disconnect(&buffer, nullptr, processor, nullptr);
    const QMetaObject *const type = processor->metaObject();
    calculate = type->method(type->indexOfMethod("calculate(std::string,std::size_t)"));
    QObject::connect(processor, &process::Processor::newProcessData, &receiver, std::move(receive));
    processor->start();
}

void DrivenProcessor::cycle() {
    calculate.invoke(processor.get(), Qt::DirectConnection, Q_ARG(std::string, clock),
                     Q_ARG(std::size_t, sampleAmount));
}
