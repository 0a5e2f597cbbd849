#include "pdf/security/Keyring.h"

#include "pdf/security/FileKey.h"

namespace quillon::pdf {

void Keyring::learn(EncryptionDictionary dictionary) {
    decryptor_ = std::make_shared<const Decryptor>(std::make_shared<const EncryptionDictionary>(std::move(dictionary)),
                                                   std::nullopt);
    static_cast<void>(open({}));
}

Access Keyring::open(std::string_view utf8Password) {
    std::string password(utf8Password);
    if (const auto known = tried_.find(password); known != tried_.end()) return known->second;
    auto key = openWithPassword(*decryptor_->dictionary(), password);
    const Access access = !key ? Access::None : key->isOwner ? Access::Owner : Access::User;
    if (key && decryptor_->isLocked()) {
        decryptor_ = std::make_shared<const Decryptor>(decryptor_->dictionary(), std::move(key->key));
    }
    if (tried_.size() == most) tried_.clear();
    tried_.emplace(std::move(password), access);
    return access;
}

}  // namespace quillon::pdf
