#pragma once

#include "pdf/io/BlockCache.h"
#include "pdf/object/Object.h"
#include "pdf/read/CrossReferenceTable.h"
#include "pdf/read/ObjectStream.h"
#include "pdf/read/ObjectStreamPrefetcher.h"
#include "pdf/read/Warnings.h"
#include "pdf/security/Decryptor.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quillon::pdf {

/// The text of an object and, for streams, where their data is.
struct ObjectText {
    OwnedText source;       ///< from the beginning of the value, at least to the asked length; usually beyond the value
    bool inFile = false;    ///< directly in the file, where alone a stream can be
    bool complete = false;  ///< `source` reaches to where no object can go on
    /// Only if `inFile`: in the file, of the first byte of `source`. Where strings were deciphered, only right for what
    /// stands behind the value.
    std::uint64_t offset = 0;
    std::size_t valueEnd = 0;      ///< behind the value; 0 where it is not known, or malformed
    std::uint32_t generation = 0;  ///< as the file has it; only if `inFile`

    [[nodiscard]] std::string_view text() const noexcept { return source.text; }
    /// The value alone, if its end is known; otherwise all of `text`.
    [[nodiscard]] std::string_view value() const noexcept {
        return valueEnd != 0 ? text().substr(0, valueEnd) : text();
    }
    /// Where the data of a stream begins in `text`; nothing for any other object. Asks for `valueEnd`.
    [[nodiscard]] std::optional<std::size_t> streamData() const noexcept;
};

struct StreamExtent {
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
};

/// Finds the objects of one file. An entry of the cross-reference data that leads elsewhere makes it scan the file,
/// once, and go on with what was found. Not thread-safe.
class ObjectReader {
public:
    /// Reads the cross-reference data, by scanning if need be. `warnings` must outlive the reader.
    ObjectReader(std::shared_ptr<InputFile> file, Warnings& warnings);

    [[nodiscard]] const Dictionary& trailer() const noexcept { return table_.trailer; }
    [[nodiscard]] const CrossReferenceTable& table() const noexcept { return table_; }
    [[nodiscard]] BlockCache& file() noexcept { return file_; }
    [[nodiscard]] Warnings& warnings() noexcept { return warnings_; }
    /// Where `%PDF-` stands; nothing when the file has no header.
    [[nodiscard]] std::optional<std::uint64_t> headerOffset() const noexcept { return headerOffset_; }

    /// From now on strings and object streams are deciphered. Null where nothing is enciphered.
    void setDecryptor(std::shared_ptr<const Decryptor> decryptor);
    [[nodiscard]] const std::shared_ptr<const Decryptor>& decryptor() const noexcept { return decryptor_; }

    /// Nothing for an object that is free or does not exist, which reads as null.
    [[nodiscard]] std::optional<ObjectText> find(Reference reference, std::size_t wanted = usualObject);
    /// The text of an object that stands in an object stream, which `holder` keeps; nothing for any other. Quicker than
    /// `find` for objects that are asked for one after the other: the holder, empty or that of an earlier call, mostly
    /// stays as it is.
    [[nodiscard]] std::optional<std::string_view> findPacked(Reference reference,
                                                             std::shared_ptr<const ObjectStream>& holder);
    /// The text of a whole value, followed by what tells a stream from a plain object; nothing when it does not exist.
    /// Malformed values are given as far as the file goes, up to a limit. Sets `valueEnd`.
    [[nodiscard]] std::optional<ObjectText> findWhole(Reference reference);

    /// Whether the cross-reference data has such an object.
    [[nodiscard]] bool exists(Reference reference) const {
        return exists(reference, table_.entries.get(reference.number));
    }
    /// The same for the object whose entry is `entry`.
    [[nodiscard]] bool exists(Reference reference, const CrossReferenceEntry& entry) const noexcept {
        using enum CrossReferenceEntry::Kind;
        if (entry.kind == Unknown || entry.kind == Free) return false;
        const std::uint32_t generation = entry.kind == InFile ? entry.detail : 0;
        return table_.recovered || generation == reference.generation;
    }
    /// The object at `entry` is about to be read: if its object stream is the one read last, has the processor fetch
    /// it.
    void fetchAhead(const CrossReferenceEntry& entry) const noexcept {
        if (lastObjects_ && entry.place == lastStream_) lastObjects_->fetchAhead(entry.detail);
    }
    /// Whether the text of a value is null or refers to nothing; such an entry counts as missing (ISO 32000-2, 7.3.7).
    [[nodiscard]] bool isNull(std::string_view valueText);
    /// Whether a structure that named `places` objects so far can still be that of a file of this size.
    [[nodiscard]] bool mayVisit(std::uint64_t places) const noexcept;

    [[nodiscard]] Object parse(Reference reference);
    /// Follows references until something else is found.
    [[nodiscard]] Object resolve(const Object& object);
    [[nodiscard]] Object resolve(std::string_view valueText);

    /// Where the data of a stream is that begins at the file offset `data`; `length` is the text of its `Length`, empty
    /// if it has none.
    [[nodiscard]] StreamExtent streamExtent(std::uint32_t number, std::string_view length, std::uint64_t data);

    /// The decoded data of a stream, damaged data as far as they go. Nothing for any other object, and for a stream
    /// that has a filter of pictures or decodes to more than `limit` bytes.
    [[nodiscard]] std::optional<std::string> decodedStream(Reference reference, std::size_t limit);
    /// How the data of the stream `object`, found whole, is deciphered; nothing when the key is missing. If it has a
    /// crypt filter, `dictionary` becomes the text of its dictionary without that.
    [[nodiscard]] std::optional<StreamKey> streamKey(std::uint32_t number, const ObjectText& object,
                                                     std::string& dictionary);

    /// Replaces the cross-reference data by what a scan of the file finds. False when that was done before.
    bool recover(std::string_view reason, std::uint32_t object = 0, std::int64_t offset = -1);

    /// Counts bytes that were taken over from the file. False once that is more than a file of its size can hold, as
    /// with objects that overlap each other to blow up the output.
    [[nodiscard]] bool charge(std::uint64_t bytes) noexcept;
    /// Whether a file of its size can hold so much.
    [[nodiscard]] bool canHold(std::uint64_t bytes) const noexcept;

    /// The object streams of the file that are not in memory, in the order in which their objects are numbered.
    [[nodiscard]] std::vector<ObjectStreamPrefetcher::Wanted> objectStreams() const;
    /// Takes object streams from `prefetcher` where it has them; null: from the file alone. It must outlive its use.
    /// A file that was scanned in the meantime is not asked of it: its object streams are where they were not thought
    /// to be.
    void setPrefetcher(ObjectStreamPrefetcher* prefetcher) noexcept {
        prefetcher_ = table_.recovered ? nullptr : prefetcher;
    }

    /// Bytes of the object streams that are in memory.
    [[nodiscard]] std::size_t textInMemory() const noexcept { return streamBytes_; }
    /// Frees the blocks and object streams that were read.
    void trim();
    /// Bytes held besides those.
    [[nodiscard]] std::size_t memory() const noexcept;

    static constexpr std::size_t usualObject = 1024;

private:
    struct CachedStream {
        std::shared_ptr<const ObjectStream> objects;
        std::uint64_t lastUse = 0;
    };

    std::optional<ObjectText> findStored(Reference reference, std::size_t wanted);
    std::optional<ObjectText> findWholeStored(Reference reference);
    void decryptStrings(std::uint32_t number, ObjectText& object) const;
    std::optional<ObjectText> findInFile(Reference reference, const CrossReferenceEntry& entry, std::size_t wanted);
    std::optional<std::string_view> findInStream(std::uint32_t number, const CrossReferenceEntry& entry);
    std::shared_ptr<const ObjectStream> objectStream(std::uint32_t number);
    std::shared_ptr<const ObjectStream> readObjectStream(std::uint32_t number);
    Object resolveDeep(const Object& object);
    std::optional<std::int64_t> integer(std::string_view text);
    void makeRoom(std::size_t bytes);
    std::uint64_t nextObject(std::uint64_t offset);

    BlockCache file_;
    Warnings& warnings_;
    std::shared_ptr<const Decryptor> decryptor_;
    std::optional<std::uint64_t> headerOffset_;
    CrossReferenceTable table_;
    std::unordered_map<std::uint32_t, CachedStream> streams_;
    std::size_t streamBytes_ = 0;
    std::uint32_t lastStream_ = 0;  // the one asked for last, and its objects
    std::shared_ptr<const ObjectStream> lastObjects_;
    std::uint64_t clock_ = 0;
    ObjectStreamPrefetcher* prefetcher_ = nullptr;
    std::uint64_t decodedBytes_ = 0;
    std::uint64_t charged_ = 0;
    std::vector<std::uint64_t> offsets_;  // of the objects, in order; made when it must be known where one begins
};

}  // namespace quillon::pdf
