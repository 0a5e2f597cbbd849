#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace quillon::pdf {

class InputFile;

/// A file descriptor that is closed with its last holder.
class Descriptor {
public:
    explicit Descriptor(int number) noexcept : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor();

    [[nodiscard]] int number() const noexcept { return number_; }

private:
    int number_;
};

/// Keeps the number of descriptors that all InputFiles together hold at `limit` at most, however many inputs a merge
/// has: the one unread for longest is closed when another has been opened. Thread-safe, and no thread waits while
/// another opens or closes a file; each may have one more open for that moment.
class OpenFiles {
public:
    static constexpr std::size_t limit = 32;

    [[nodiscard]] static OpenFiles& instance();

    /// Takes in a file whose `descriptor` has just been opened.
    void add(const InputFile& file, std::shared_ptr<Descriptor> descriptor);
    /// The file's descriptor, opened again if need be; null when the file is not the one that it was.
    [[nodiscard]] std::shared_ptr<Descriptor> acquire(const InputFile& file);
    /// Forgets a file that is being destroyed.
    void remove(const InputFile& file);

private:
    struct Open {
        const InputFile* file;
        std::shared_ptr<Descriptor> descriptor;
        std::uint64_t lastUse;
    };

    std::shared_ptr<Descriptor> find(const InputFile& file);
    std::shared_ptr<Descriptor> findLocked(const InputFile& file);
    std::shared_ptr<Descriptor> keep(const InputFile& file, std::shared_ptr<Descriptor> descriptor);

    std::mutex mutex_;
    std::vector<Open> open_;
    std::uint64_t clock_ = 0;
};

}  // namespace quillon::pdf
