// Whatever bytes a file holds: taking it for a picture, and making a page of it, neither crashes nor hangs, and a
// picture has a size that a page can have.

#include "fuzz/MemoryFile.h"
#include "pdf/write/ObjectSink.h"
#include "platform/image/Image.h"
#include "platform/image/Picture.h"

#include <QCoreApplication>
#include <QUrl>

#include <cstdlib>

namespace {

using namespace quillon;

/// Reads what it is given and forgets it.
class NullSink final : public pdf::ObjectSink {
public:
    std::uint32_t addObject(std::string_view) override { return ++last_; }
    std::uint32_t addStream(std::string_view, std::span<const char>) override { return ++last_; }
    std::uint32_t addStream(std::string_view, const std::shared_ptr<pdf::InputFile>& file,
                            std::span<const pdf::FileRange> ranges) override {
        // Ranges of sound pictures lie inside their file.
        for (const pdf::FileRange& range : ranges) {
            if (range.offset > file->size() || range.length > file->size() - range.offset) std::abort();
        }
        return ++last_;
    }

private:
    std::uint32_t last_ = 0;
};

/// A few bytes may claim millions of pixels, which take seconds and show nothing new.
bool isLarge(const std::string& path) {
    constexpr qint64 most = 1'000'000;
    const auto file = pdf::InputFile::open(path);
    const auto picture = file ? Picture::open(file, {}) : nullptr;
    if (!picture) return false;
    const QSize pixels = picture->properties().pixels;
    return qint64{pixels.width()} * pixels.height() > most;
}

bool fitsAPage(const QSizeF& size) {
    constexpr double least = 2.999;
    constexpr double most = 14'400.001;
    return size.width() >= least && size.height() >= least && size.width() <= most && size.height() <= most;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    // Lives to the end; the picture formats beyond the built-in ones are plugins, which are found through it.
    static QCoreApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryFile file({data, size});
    const auto image = Image::initWithContentsOfURL(QUrl::fromLocalFile(QString::fromStdString(file.path())));
    if (!image) return 0;
    if (!fitsAPage(image->size())) std::abort();
    if (isLarge(file.path())) return 0;
    NullSink sink;
    static_cast<void>(image->produce(sink));
    return 0;
}
