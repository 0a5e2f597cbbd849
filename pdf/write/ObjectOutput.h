#pragma once

#include "pdf/read/ObjectReader.h"
#include "pdf/write/ObjectPlaces.h"
#include "pdf/write/ObjectSink.h"
#include "pdf/write/ObjectStreamIndex.h"
#include "pdf/write/OutputPipeline.h"
#include "pdf/write/StreamIndex.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::pdf {

/// The objects of the file being written: gives them their numbers, packs plain objects into object streams (ISO
/// 32000-2, 7.5.7), puts streams out as they are, equal ones once, and writes the cross-reference stream at the end.
/// Used by one thread.
class ObjectOutput final : public ObjectSink {
public:
    /// `encryptor` protects what is written and must outlive this; null: nothing does.
    explicit ObjectOutput(OutputFile& file, const Encryptor* encryptor = nullptr);

    /// A number for an object that is written later, or never: then it reads as null.
    [[nodiscard]] std::uint32_t reserve() { return places_.reserve(); }

    /// The text of the object stream that is being filled. An object is written by appending its value and calling
    /// `close` with its number; what was appended and not closed is taken back by resizing.
    [[nodiscard]] std::string& body() noexcept { return body_; }
    /// Ends the object whose value was appended to `body()` from position `begin` on.
    void close(std::uint32_t number, std::size_t begin);

    /// Writes a stream whose data is part of a file. `entries` as for addStream. An equal stream that is written
    /// already is used instead, unless `number` is given (not 0). Returns the object number.
    std::uint32_t addFileStream(std::uint32_t number, std::string_view entries, BlockCache& file, StreamExtent extent);

    /// The same for data that is enciphered in the file.
    std::uint32_t addFileStream(std::uint32_t number, std::string_view entries, BlockCache& file, StreamExtent extent,
                                StreamKey key);

    std::uint32_t addObject(std::string_view value) override;
    /// The same under a number that was reserved.
    void addObject(std::uint32_t number, std::string_view value);
    std::uint32_t addStream(std::string_view entries, std::span<const char> data) override;
    std::uint32_t addStream(std::string_view entries, const std::shared_ptr<InputFile>& file,
                            std::span<const FileRange> ranges) override;

    /// Writes what is left, and waits for it; no object may follow. False if any writing failed.
    [[nodiscard]] bool finishObjects();
    /// After that: writes the cross-reference stream with `trailer` (the text of its entries besides its own and `ID`)
    /// and the end of the file. `firstId` is the first half of the `ID` if the document has one already. False if
    /// writing failed; the last of it may be left to the file's `commit`.
    [[nodiscard]] bool finish(std::string_view trailer, std::string_view firstId);

    /// After finishObjects(): inputs that became shorter while they were copied.
    [[nodiscard]] const std::vector<std::string>& shortened() const noexcept { return shortened_; }

private:
    void beginBody();
    void writeApart(std::uint32_t number, std::size_t begin);
    void flushBody();
    /// A stream whose data is being read into the chunk.
    struct OpenStream {
        std::uint32_t number;
        bool shareable;     // an equal one may be used instead; the number is not reserved yet
        std::size_t begin;  // of the object in the chunk
        std::size_t data;   // of the data
    };

    /// An equal stream if `shareable` and there is one; otherwise the stream is entered as `number`.
    std::optional<std::uint32_t> enter(const StreamContent& stream, std::uint32_t number, bool shareable);

    std::uint32_t endStream(const OpenStream& stream, std::string_view entries, InputFile& file,
                            std::span<const FileRange> ranges);
    void hold(const std::shared_ptr<InputFile>& file);
    void flushChunk();
    void noteShortened(const std::string& path);
    void beginObject(std::uint32_t number);
    void appendEnciphered(std::string_view text);
    void beginStream(std::uint32_t number, std::string_view entries, std::uint64_t length);
    void makeRoom();
    void sealData(std::size_t begin);
    std::uint32_t addData(std::uint32_t number, std::string_view entries, std::string_view data);
    std::uint32_t copyLarge(std::uint32_t number, std::string_view entries, const std::shared_ptr<InputFile>& file,
                            std::span<const FileRange> ranges);

    static constexpr std::size_t bodyObjects = 200;
    static constexpr std::size_t bodyBytes = 64 * 1024;
    // Readers, this program too, limit what an object stream may decode to, so a longer object stands outside of them.
    static constexpr std::size_t longestPacked = 16U << 20U;
    // Object streams that are deflated with the same codes: objects of a document resemble each other.
    static constexpr std::size_t bodiesOfCodes = 32;
    // The index of an object stream is written in front of the objects when all are there. What it does not need stays
    // blank, and deflates to nothing.
    static constexpr std::size_t indexRoom = bodyObjects * indexBytesOfObject;
    static constexpr std::size_t chunkBytes = 64 * 1024;
    // Enciphered data up to this length is deciphered in memory.
    static constexpr std::uint64_t mostInMemory = 4U << 20U;

    [[nodiscard]] std::string encryptionEntry();

    OutputFile& file_;
    const Encryptor* encryptor_;
    OutputPipeline pipeline_;
    StreamIndex streams_;
    std::vector<std::shared_ptr<InputFile>> held_;  // files of the index that nobody else may hold
    std::string body_;
    std::vector<PackedObject> packed_;
    std::shared_ptr<const DeflateCodes> codes_;
    std::size_t bodies_ = 0;
    std::string chunk_;
    std::vector<OutputPipeline::Placed> chunkObjects_;
    std::vector<OutputPipeline::Sealed> chunkSealed_;
    std::vector<std::string> shortened_;
    ObjectPlaces places_;
};

}  // namespace quillon::pdf
