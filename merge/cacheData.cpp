#include "merge/cacheData.h"

#include <mutex>
#include <utility>

namespace quillon {
namespace {

/// Guards the object fields of all entries: they are held for a moment only, and a mutex takes as much memory as they.
std::mutex& mutex() {
    static std::mutex instance;
    return instance;
}

QByteArray encoded(const QUrl& url) {
    QByteArray text = url.toEncoded();
    text.squeeze();
    return text;
}

}  // namespace

cacheData::cacheData(const QUrl& url) : url_(encoded(url)) {}

QUrl cacheData::url() const {
    const std::lock_guard lock(mutex());
    return QUrl::fromEncoded(url_);
}

void cacheData::setUrl(const QUrl& url) {
    const std::lock_guard lock(mutex());
    url_ = encoded(url);
}

QString cacheData::password() const {
    return typed(&Typed::password);
}

void cacheData::setPassword(const QString& password) {
    setTyped(&Typed::password, password);
}

QString cacheData::value() const {
    return typed(&Typed::value);
}

void cacheData::setValue(const QString& value) {
    setTyped(&Typed::value, value);
}

QString cacheData::typed(QString Typed::*field) const {
    const std::lock_guard lock(mutex());
    return typed_ ? (*typed_).*field : QString();
}

void cacheData::setTyped(QString Typed::*field, const QString& text) {
    const std::lock_guard lock(mutex());
    if (!typed_ && text.isNull()) return;
    if (!typed_) typed_ = std::make_unique<Typed>();
    (*typed_).*field = text;
}

void cacheData::swap(cacheData& other) {
    if (this == &other) return;
    const std::lock_guard lock(mutex());
    std::swap(url_, other.url_);
    std::swap(typed_, other.typed_);
    std::swap(mergeMethod_, other.mergeMethod_);
    other.needPassword_ = needPassword_.exchange(other.needPassword_);
    other.fileSize_ = fileSize_.exchange(other.fileSize_);
    other.pageCount_ = pageCount_.exchange(other.pageCount_);
    other.isDecrypted_ = isDecrypted_.exchange(other.isDecrypted_);
    std::swap(isImage_, other.isImage_);
}

}  // namespace quillon
