#include "merge/cacheData.h"

#include <utility>

namespace quillon {

cacheData::cacheData(const QUrl& url) : url_(url) {}

QUrl cacheData::url() const {
    const std::lock_guard lock(mutex_);
    return url_;
}

void cacheData::setUrl(const QUrl& url) {
    const std::lock_guard lock(mutex_);
    url_ = url;
}

QString cacheData::password() const {
    const std::lock_guard lock(mutex_);
    return password_;
}

void cacheData::setPassword(const QString& password) {
    const std::lock_guard lock(mutex_);
    password_ = password;
}

QString cacheData::value() const {
    const std::lock_guard lock(mutex_);
    return value_;
}

void cacheData::setValue(const QString& value) {
    const std::lock_guard lock(mutex_);
    value_ = value;
}

void cacheData::swap(cacheData& other) {
    if (this == &other) return;
    const std::scoped_lock lock(mutex_, other.mutex_);
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
