#include "platform/image/TiffStream.h"

#include <tiffio.h>

#include <cstdarg>
#include <cstdio>

namespace quillon {

namespace {

// No table of a directory is larger than this in a real file; damaged ones claim gigabytes.
constexpr tmsize_t mostBytesOfOneTable = tmsize_t{256} << 20;

constexpr int handled = 1;

int dropMessage(TIFF*, void*, const char*, const char*, va_list) {
    return handled;
}

}  // namespace

struct TiffProcedures {
    static tmsize_t read(thandle_t handle, void* buffer, tmsize_t length) {
        auto& stream = *static_cast<TiffStream*>(handle);
        const std::span<char> into(static_cast<char*>(buffer), static_cast<std::size_t>(length));
        const std::size_t count = stream.readAt(stream.position_, into);
        stream.position_ += count;
        return static_cast<tmsize_t>(count);
    }

    static tmsize_t write(thandle_t handle, void* buffer, tmsize_t length) {
        auto& stream = *static_cast<TiffStream*>(handle);
        const std::span<const char> data(static_cast<const char*>(buffer), static_cast<std::size_t>(length));
        const std::size_t count = stream.writeAt(stream.position_, data);
        stream.position_ += count;
        return static_cast<tmsize_t>(count);
    }

    static toff_t seek(thandle_t handle, toff_t offset, int whence) {
        auto& stream = *static_cast<TiffStream*>(handle);
        if (whence == SEEK_CUR) offset += stream.position_;
        if (whence == SEEK_END) offset += stream.size();
        return stream.position_ = offset;
    }

    static int close(thandle_t) { return 0; }

    static toff_t size(thandle_t handle) { return static_cast<TiffStream*>(handle)->size(); }

    static int map(thandle_t, void**, toff_t*) { return 0; }

    static void unmap(thandle_t, void*, toff_t) {}
};

TiffStream::Handle TiffStream::open(const char* mode) {
    using P = TiffProcedures;
    const std::unique_ptr<TIFFOpenOptions, void (*)(TIFFOpenOptions*)> options(TIFFOpenOptionsAlloc(),
                                                                               &TIFFOpenOptionsFree);
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), mostBytesOfOneTable);
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), &dropMessage, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), &dropMessage, nullptr);
    position_ = 0;
    return Handle(TIFFClientOpenExt("", mode, this, &P::read, &P::write, &P::seek, &P::close, &P::size, &P::map,
                                    &P::unmap, options.get()),
                  &TIFFClose);
}

}  // namespace quillon
