#include "platform/gui/GuiServices.h"

#include <QtGlobal>

#include <dlfcn.h>

namespace quillon {

namespace {

const GuiServices* load() {
    // Found through the run path of the program, which names the folder in the build tree or in the installation. It
    // is never unloaded: Qt does not support that for its libraries.
    void* const module = ::dlopen(QUILLON_GUI_MODULE, RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    void* const entry = module ? ::dlsym(module, "quillonGuiServices") : nullptr;
    if (!entry) {
        qWarning("Pictures cannot be decoded and text cannot be drawn: %s", ::dlerror());
        return nullptr;
    }
    return reinterpret_cast<const GuiServices* (*)()>(entry)();
}

}  // namespace

const GuiServices* GuiServices::instance() {
    static const GuiServices* const services = load();
    return services;
}

}  // namespace quillon
