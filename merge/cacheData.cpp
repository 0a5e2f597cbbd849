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
    const std::lock_guard lock(mutex());
    return password_;
}

void cacheData::setPassword(const QString& password) {
    const std::lock_guard lock(mutex());
    password_ = password;
}

QString cacheData::value() const {
    const std::lock_guard lock(mutex());
    return value_;
}

void cacheData::setValue(const QString& value) {
    const std::lock_guard lock(mutex());
    value_ = value;
}

void cacheData::swap(cacheData& other) {
    if (this == &other) return;
    const std::lock_guard lock(mutex());
    std::swap(url_, other.url_);
    std::swap(password_, other.password_);
    std::swap(value_, other.value_);
    std::swap(mergeMethod_, other.mergeMethod_);
    std::swap(needPassword_, other.needPassword_);
    std::swap(fileSize_, other.fileSize_);
    std::swap(pageCount_, other.pageCount_);
    std::swap(isDecrypted_, other.isDecrypted_);
    std::swap(isImage_, other.isImage_);
}

}  // namespace quillon
