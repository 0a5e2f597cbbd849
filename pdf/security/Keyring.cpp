#include "pdf/security/Keyring.h"

#include "pdf/security/FileKey.h"

namespace quillon::pdf {

void Keyring::learn(EncryptionDictionary dictionary) {
    known_ = std::make_unique<Known>();
    known_->decryptor = std::make_shared<const Decryptor>(
        std::make_shared<const EncryptionDictionary>(std::move(dictionary)), std::nullopt);
    static_cast<void>(open({}));
}

Access Keyring::open(std::string_view utf8Password) {
    auto& [decryptor, tried] = *known_;
    std::string password(utf8Password);
    if (const auto known = tried.find(password); known != tried.end()) return known->second;
    auto key = openWithPassword(*decryptor->dictionary(), password);
    const Access access = !key ? Access::None : key->isOwner ? Access::Owner : Access::User;
    if (key && decryptor->isLocked()) {
        decryptor = std::make_shared<const Decryptor>(decryptor->dictionary(), std::move(key->key));
    }
    if (tried.size() == most) tried.clear();
    tried.emplace(std::move(password), access);
    return access;
}

}  // namespace quillon::pdf
