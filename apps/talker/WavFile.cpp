#include "talker/WavFile.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

#include <sndfile.h>

#include "common/Refusal.h"
#include "talker/Signal.h"

namespace talker {

namespace {

struct CloseFile {
    void operator()(SNDFILE *file) const { sf_close(file); }
};

} // namespace

WavFile::WavFile(const std::string &path) {
    const auto refuse = [&path](const std::string &reason) {
        throw common::Refusal("audio file '" + path + "': " + reason);
    };

    SF_INFO info = {};
    const std::unique_ptr<SNDFILE, CloseFile> file(sf_open(path.c_str(), SFM_READ, &info));
    if (!file) {
        refuse(sf_strerror(nullptr));
    }
    if (info.samplerate != 48000) {
        refuse("has " + std::to_string(info.samplerate) + " samples per second, 48000 are needed");
    }

    // Floating-point and wider integer files are rounded like any other signal; 16-bit codes stay as they are.
    channels = static_cast<std::size_t>(info.channels);
    std::vector<double> block(4096 * channels);
    std::vector<std::int16_t> read;
    while (const sf_count_t count = sf_read_double(file.get(), block.data(), static_cast<sf_count_t>(block.size()))) {
        std::transform(block.begin(), block.begin() + count, std::back_inserter(read), toCode);
    }
    length = read.size() / channels;
    if (sf_error(file.get()) != SF_ERR_NO_ERROR) {
        refuse(sf_strerror(file.get()));
    }
    if (length == 0) {
        refuse("holds no samples");
    }
    codes = std::make_shared<const std::vector<std::int16_t>>(std::move(read));
}

} // namespace talker
