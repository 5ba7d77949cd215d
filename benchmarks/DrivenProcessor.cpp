#include "DrivenProcessor.h"

#include <utility>

DrivenProcessor::DrivenProcessor(process::Processor *processor, const avb::AvbAudioBuffer &buffer,
                                 std::size_t sampleAmount, std::function<void(sonvex::ChannelData)> receive)
    : processor(processor), sampleAmount(sampleAmount) {
    QObject::disconnect(&buffer, nullptr, processor, nullptr);
    calculate = processor->metaObject()->indexOfMethod("calculate(std::string,std::size_t)");
    QObject::connect(processor, &process::Processor::newProcessData, &receiver, std::move(receive));
    processor->start();
}

void DrivenProcessor::cycle() {
    // What a queued call does once it has arrived.
    void *arguments[] = {nullptr, &clock, &sampleAmount};
    QMetaObject::metacall(processor.get(), QMetaObject::InvokeMetaMethod, calculate, arguments);
}
