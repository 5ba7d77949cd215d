#include "talker/WavFile.h"

#include <memory>
#include <utility>

#include <sndfile.h>

#include "common/Refusal.h"

namespace talker {

namespace {

struct CloseFile {
    void operator()(SNDFILE *file) const { sf_close(file); }
};

} // namespace

WavFile::WavFile(const std::string &path, unsigned rate) {
    const auto refuse = [&path](const std::string &reason) {
        throw common::Refusal("audio file '" + path + "': " + reason);
    };

    SF_INFO info = {};
    const std::unique_ptr<SNDFILE, CloseFile> file(sf_open(path.c_str(), SFM_READ, &info));
    if (!file) {
        refuse(sf_strerror(nullptr));
    }
    if (info.samplerate != static_cast<int>(rate)) {
        refuse("has " + std::to_string(info.samplerate) + " samples per second, " + std::to_string(rate) +
               " are needed");
    }

    // Doubles hold the values of all files as they are; the samples on the wire are rounded like any other signal.
    channels = static_cast<std::size_t>(info.channels);
    std::vector<double> block(4096 * channels);
    std::vector<double> read;
    while (const sf_count_t count = sf_read_double(file.get(), block.data(), static_cast<sf_count_t>(block.size()))) {
        read.insert(read.end(), block.begin(), block.begin() + count);
    }
    length = read.size() / channels;
    if (sf_error(file.get()) != SF_ERR_NO_ERROR) {
        refuse(sf_strerror(file.get()));
    }
    if (length == 0) {
        refuse("holds no samples");
    }
    values = std::make_shared<const std::vector<double>>(std::move(read));
}

} // namespace talker
