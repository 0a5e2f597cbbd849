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
    document_ = SourceDocument::load(file_, warnings_, believeCounts_, keys_);
    if (!document_) return false;
    pageCount_ = static_cast<std::uint32_t>(document_->pages().pages().size());
    encrypted_ = document_->isEncrypted();
    if (encrypted_) permissions_ = keys_.decryptor()->dictionary()->permissions;
    version_ = document_->version();
    catalogKeys_ = document_->catalogKeys();
    document_->trim();
    return true;
}

std::vector<std::string> Source::warnings() const {
    const std::lock_guard lock(mutex_);
    return warnings_.lines();
}

Access Source::unlock(std::string_view utf8Password) {
    if (!encrypted_) return Access::Owner;
    Access access = Access::None;
    {
        const std::lock_guard lock(mutex_);
        const bool wasLocked = keys_.decryptor()->isLocked();
        access = keys_.open(utf8Password);
        if (!wasLocked || access == Access::None) return access;
        document_.reset();  // what was read without the key is not all there is
        SourceRegistry::instance().drop(*this);
    }
    const SourceAccess opened(*this);
    pageCount_ = opened.document() ? static_cast<std::uint32_t>(opened.document()->pages().pages().size()) : 0;
    if (opened.document()) catalogKeys_ = opened.document()->catalogKeys();
    return access;
}

SourceAccess::SourceAccess(Source& source) : source_(source), lock_(source.mutex_) {
    if (source_.document_) return;
    source_.document_ = SourceDocument::load(source_.file_, source_.warnings_, source_.believeCounts_, source_.keys_);
    if (!source_.believeCounts_) source_.recount();
}

/// The pages of a tree that was believed wrongly: whoever has counted them before has counted others.
void Source::recount() {
    if (!document_) return;
    const auto pages = static_cast<std::uint32_t>(document_->pages().pages().size());
    const std::uint32_t believed = pageCount_.exchange(pages);
    if (believed == pages) return;
    warnings_.add("the counts of the page tree are wrong: there are " + std::to_string(pages) + " pages, not " +
                  std::to_string(believed) + " as was believed when the file was opened");
}

SourceAccess::~SourceAccess() {
    settle(source_);
}

/// Decides whether the structure stays in memory after use.
void SourceAccess::settle(Source& source) {
    if (!source.document_ || source.holds_ > 0) return;
    source.document_->trim();
    if (!SourceRegistry::instance().keep(source, source.document_->memory())) source.document_.reset();
}

/// Does not read the structure: it may never be asked for.
void SourceAccess::hold(Source& source) {
    const std::lock_guard lock(source.mutex_);
    ++source.holds_;
}

void SourceAccess::unhold(Source& source) {
    const std::lock_guard lock(source.mutex_);
    --source.holds_;
    settle(source);
}

void SourceAccess::distrustCounts() {
    source_.believeCounts_ = false;
    release();
}

std::unique_ptr<SourceDocument> SourceAccess::detach() {
    SourceRegistry::instance().drop(source_);
    return std::move(source_.document_);
}

}  // namespace quillon::pdf
