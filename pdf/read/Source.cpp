#include "pdf/read/Source.h"

#include "pdf/read/SourceRegistry.h"

namespace quillon::pdf {

std::shared_ptr<Source> Source::open(const std::string& path) {
    const auto identity = InputFile::identityOf(path);
    if (!identity) return nullptr;
    if (auto known = SourceRegistry::instance().find(*identity)) return known;
    auto file = InputFile::open(path);
    if (!file) return nullptr;
    const auto source = std::make_shared<Source>(Passkey(), std::move(file));
    if (!source->load()) return nullptr;
    auto known = SourceRegistry::instance().add(source);
    const SourceAccess access(*known);  // its end decides whether the structure is kept
    return known;
}

Source::~Source() {
    SourceRegistry::instance().remove(*this);
}

bool Source::load() {
    const std::lock_guard lock(mutex_);
    document_ = SourceDocument::load(file_, warnings_, believeCounts_);
    if (!document_) return false;
    pageCount_ = static_cast<std::uint32_t>(document_->pages().pages().size());
    encrypted_ = document_->isEncrypted();
    version_ = document_->version();
    catalogKeys_ = document_->catalogKeys();
    document_->trim();
    return true;
}

std::vector<std::string> Source::warnings() const {
    const std::lock_guard lock(mutex_);
    return warnings_.lines();
}

SourceAccess::SourceAccess(Source& source) : source_(source), lock_(source.mutex_) {
    if (!source_.document_)
        source_.document_ = SourceDocument::load(source_.file_, source_.warnings_, source_.believeCounts_);
}

SourceAccess::~SourceAccess() {
    if (!source_.document_) return;
    source_.document_->trim();
    if (!SourceRegistry::instance().keep(source_, source_.document_->memory())) source_.document_.reset();
}

void SourceAccess::distrustCounts() {
    source_.believeCounts_ = false;
    release();
}

void SourceAccess::release() {
    source_.document_.reset();
    SourceRegistry::instance().drop(source_);
}

}  // namespace quillon::pdf
