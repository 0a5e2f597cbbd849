#include "platform/image/MessageSilencer.h"

#include <QtGlobal>
#include <tiffio.h>

#include <atomic>
#include <mutex>

namespace quillon {

namespace {

thread_local int silencersOfThread = 0;

std::mutex mutex;
int silencers = 0;  // guarded by mutex
std::atomic<QtMessageHandler> previousHandler = nullptr;

void passOnUnlessSilenced(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (silencersOfThread > 0 && type != QtFatalMsg) return;
    if (const QtMessageHandler handler = previousHandler) handler(type, context, message);
}

}  // namespace

// The decoders write in the default category as well as in their own, so that no category filter can tell their
// messages; the message handler can, by the thread. It is put back when nobody decodes, because the program and its
// tests install handlers of their own. libtiff has one handler for the process, and in this process nobody who needs
// it.
MessageSilencer::MessageSilencer() {
    ++silencersOfThread;
    const std::scoped_lock lock(mutex);
    if (silencers++ > 0) return;
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
    previousHandler = qInstallMessageHandler(passOnUnlessSilenced);
}

MessageSilencer::~MessageSilencer() {
    --silencersOfThread;
    const std::scoped_lock lock(mutex);
    if (--silencers == 0) qInstallMessageHandler(previousHandler);
}

}  // namespace quillon
