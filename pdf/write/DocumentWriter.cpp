#include "pdf/write/DocumentWriter.h"

#include "pdf/io/HeapRoom.h"
#include "pdf/join/DocumentJoiner.h"
#include "pdf/join/SourceSurveyor.h"
#include "pdf/object/DictionaryScanner.h"
#include "pdf/write/OutlineWriter.h"
#include "pdf/write/OutputFile.h"
#include "pdf/write/PageCopies.h"
#include "pdf/write/PageTreeWriter.h"
#include "pdf/write/PaintWriter.h"
#include "pdf/write/PaintedPages.h"
#include "pdf/write/SourceCopier.h"
#include "pdf/write/SourcePlan.h"

#include <algorithm>
#include <array>
#include <future>
#include <iterator>
#include <optional>

namespace quillon::pdf {

namespace {

// Cross-reference and object streams came with PDF 1.5.
constexpr Version lowestVersion = 15;
// The only protection that is not deprecated came with PDF 2.0.
constexpr Version protectedVersion = 20;

/// One run of writeDocument, from the first byte of the file to the last.
class DocumentWriter {
public:
    DocumentWriter(const DocumentPlan& plan, OutputFile& file)
        : plan_(plan), file_(file), sources_(plan), outline_(plan.outline), joiner_(std::in_place, sources_, plan) {}

    bool write(WriteResult& result);
    /// Whether a page tree turned out to be other than it was read; it is read differently from now on.
    [[nodiscard]] bool mustRepeat() const noexcept { return repeat_; }

private:
    [[nodiscard]] std::uint64_t inputBytes() const;
    void writeHeader();
    std::unique_ptr<SourceDocument> copySource(const SourcePlan& source, SourceSurvey& survey,
                                               ObjectStreamPrefetcher& prefetcher);
    void copyPages(const SourcePlan& source, SourceDocument& document, PageCopies& copies, SourceCopier& copier);
    void writeCatalog();
    void copyBase(SourceDocument& document, SourceCopier& copier);
    void writeInformation(SourceDocument* base, SourceCopier* copier);
    std::string writeMetadata();
    void writeMadePages();
    void writeMadePage(std::size_t index, std::string entries);
    void drop(std::size_t page, std::string_view file, std::string_view reason);

    const DocumentPlan& plan_;
    OutputFile& file_;
    const SourcePlans sources_;
    std::vector<std::string> warnings_;
    ObjectOutput* output_ = nullptr;
    PageTreeWriter* tree_ = nullptr;
    PaintWriter* painter_ = nullptr;
    std::uint32_t catalog_ = 0;
    std::uint32_t information_ = 0;
    OutlineWriter outline_;
    std::optional<DocumentJoiner> joiner_;  // until the file is finished
    std::string catalogEntries_;            // the base's
    bool repeat_ = false;
    std::string firstId_;
};

bool DocumentWriter::write(WriteResult& result) {
    const HeapRoom room(inputBytes());
    writeHeader();
    const auto encryptor = plan_.protection ? std::make_unique<const Encryptor>(*plan_.protection) : nullptr;
    ObjectOutput output(file_, encryptor.get());
    output_ = &output;
    joiner_->setOutput(output);
    catalog_ = output.reserve();
    PageTreeWriter tree(output, plan_.pages.size());
    tree_ = &tree;
    PaintWriter painter(output);
    painter_ = &painter;
    {
        // While one source is copied, the next is read and its object streams are inflated.
        ObjectStreamPrefetcher prefetcher;
        SourceSurveyor surveyor(sources_, prefetcher,
                                [this](std::size_t index) { return joiner_->wishesFor(sources_[index]); });
        for (std::size_t i = 0; i < sources_.size(); ++i) {
            SourceSurvey survey = surveyor.take(i);
            if (auto document = copySource(sources_[i], survey, prefetcher)) surveyor.discard(std::move(document));
        }
    }
    writeMadePages();
    if (information_ == 0) writeInformation(nullptr, nullptr);
    result.pages = tree.write();
    writeCatalog();
    const std::string trailer =
        "/Root " + std::to_string(catalog_) + " 0 R/Info " + std::to_string(information_) + " 0 R";
    const bool complete = output.finishObjects();
    // What it knows of the documents is many small pieces of memory, which go while the end of the file is put
    // together.
    const auto freed = std::async(std::launch::async | std::launch::deferred, [this] { joiner_.reset(); });
    const bool finished = complete && output.finish(trailer, firstId_);
    for (std::size_t i = 0; i < sources_.size(); ++i)
        std::ranges::move(sources_[i].source()->warnings(), std::back_inserter(warnings_));
    for (const std::string& file : output.shortened()) {
        warnings_.push_back(file + ": became shorter while it was copied; what is missing was made up with zeros");
    }
    result.bytes = file_.size();
    std::ranges::move(warnings_, std::back_inserter(result.warnings));
    return finished && result.pages > 0;
}

std::uint64_t DocumentWriter::inputBytes() const {
    std::uint64_t bytes = 0;
    for (std::size_t i = 0; i < sources_.size(); ++i) bytes += sources_[i].source()->file()->size();
    return bytes;
}

void DocumentWriter::writeCatalog() {
    const std::uint32_t outline = outline_.write(*output_, *tree_);
    joiner_->write(*tree_, catalogEntries_);
    catalogEntries_ += writeMetadata();
    if (outline != 0) catalogEntries_ += "/Outlines " + std::to_string(outline) + " 0 R";
    std::string& body = output_->body();
    const std::size_t begin = body.size();
    body += "<</Type/Catalog/Pages " + std::to_string(tree_->root()) + " 0 R" + catalogEntries_ + ">>";
    output_->close(catalog_, begin);
}

void DocumentWriter::writeHeader() {
    Version version = plan_.protection ? protectedVersion : lowestVersion;
    for (std::size_t i = 0; i < sources_.size(); ++i) version = std::max(version, sources_[i].source()->version());
    // The four bytes beyond ASCII tell transfer programs that the file is binary.
    file_.write("%PDF-" + std::to_string(version / 10) + '.' + std::to_string(version % 10) + "\n%\xE2\xE3\xCF\xD3\n");
}

/// Returns the structure of the source, of no use any more; null where there was none.
std::unique_ptr<SourceDocument> DocumentWriter::copySource(const SourcePlan& source, SourceSurvey& survey,
                                                           ObjectStreamPrefetcher& prefetcher) {
    SourceAccess access(*source.source());
    SourceDocument* document = access.document();
    if (!document || document->isLocked()) {
        const std::string_view reason = document ? "is protected and could not be unlocked; its pages are left out"
                                                 : "has changed or gone since it was opened; its pages are left out";
        for (const SourcePlan::Copy& copy : source.copies()) drop(copy.outputPage, source.source()->path(), reason);
        prefetcher.forget(*source.source()->file());
        return nullptr;
    }
    document->reader().setPrefetcher(&prefetcher);
    SourceCopier copier(*document, *output_, source.source() == plan_.base);
    PageCopies copies(source, document->pages(), *tree_, copier);
    joiner_->begin(source, survey, copies, *document, copier);
    copyPages(source, *document, copies, copier);
    if (source.source() == plan_.base) copyBase(*document, copier);
    outline_.copyActions(*source.source(), copies, copier);
    joiner_->end();
    copier.drain();
    prefetcher.forget(*source.source()->file());
    if (document->wasMisled()) {
        repeat_ = true;
        access.distrustCounts();
    }
    return access.detach();
}

void DocumentWriter::copyPages(const SourcePlan& source, SourceDocument& document, PageCopies& copies,
                               SourceCopier& copier) {
    PaintedPages painted(document, copier, *painter_, plan_.scout.get());
    for (const PageCopies::Copy& copy : copies.all()) {
        joiner_->enter(copy);
        SourceCopier::PageJob job;
        job.page = copy.page;
        job.number = copy.number;
        job.parent = tree_->parentOf(copy.outputPage);
        job.withContent = plan_.pages[copy.outputPage].withContent;
        job.painting = plan_.pages[copy.outputPage].painting.get();
        job.painter = &painted;
        job.overlay = copies.overlay(copy.group);
        job.asked = copy.asked;
        if (!job.page || !copier.copyPage(job)) {
            drop(copy.outputPage, source.source()->path(), "a page cannot be read; it is left out");
        }
        copier.drain();
    }
}

void DocumentWriter::copyBase(SourceDocument& document, SourceCopier& copier) {
    copier.announceCatalog(catalog_);
    // A version in the catalog would contradict the header, and permissions granted by a signature end with the
    // signature.
    std::vector<std::string_view> dropped{"Type", "Pages", "Version", "Perms", "OpenAction"};
    if (!plan_.keepOutline) dropped.emplace_back("Outlines");
    if (!plan_.metadata.empty()) dropped.emplace_back("Metadata");
    std::ranges::copy(joiner_->catalogKeys(), std::back_inserter(dropped));
    copier.copyCatalog(dropped, catalogEntries_);
    catalogEntries_ += joiner_->openAction();
    writeInformation(&document, &copier);
    const Object id = document.reader().resolve(document.reader().trailer()["ID"]);
    if (id.array() && !id.array()->empty() && id.array()->front().string()) firstId_ = *id.array()->front().string();
}

/// The entry of the catalog; empty when it stays as it is. Not deflated, so that programs that know nothing of PDF find
/// the metadata.
std::string DocumentWriter::writeMetadata() {
    if (plan_.metadata.empty()) return {};
    const std::uint32_t number = output_->addStream("/Type/Metadata/Subtype/XML", plan_.metadata);
    return "/Metadata " + std::to_string(number) + " 0 R";
}

void DocumentWriter::writeInformation(SourceDocument* base, SourceCopier* copier) {
    information_ = output_->reserve();
    std::string text = "<<";
    const auto replaced = [&](std::string_view key) {
        return key == "Producer" ||
               std::ranges::any_of(plan_.information, [&](const auto& entry) { return entry.first == key; });
    };
    if (base) {
        const Object old = base->reader().resolve(base->reader().trailer()["Info"]);
        if (const Dictionary* dictionary = old.dictionary()) {
            for (const auto& [key, value] : dictionary->entries()) {
                if (replaced(key)) continue;
                std::string written;
                value.write(written);
                writeName(text, key);
                copier->copyValue(written, nullptr, text);
            }
        }
    }
    for (const auto& [key, value] : plan_.information) {
        if (value.empty()) continue;
        writeName(text, key);
        writeString(text, value);
    }
    text += "/Producer";
    writeString(text, producer);
    text += ">>";
    std::string& body = output_->body();
    const std::size_t begin = body.size();
    body += text;
    output_->close(information_, begin);
}

void DocumentWriter::writeMadePages() {
    for (std::size_t i = 0; i < plan_.pages.size(); ++i) {
        if (const auto* blank = std::get_if<std::shared_ptr<const BlankPage>>(&plan_.pages[i].origin)) {
            const BlankPage page = *blank ? **blank : BlankPage();
            std::string entries = "/Resources<<>>/MediaBox";
            writeRectangle(entries, page.mediaBox);
            if (page.rotation != 0) entries += "/Rotate " + std::to_string(page.rotation);
            writeMadePage(i, std::move(entries));
        } else if (const auto* maker = std::get_if<std::shared_ptr<const PageProducer>>(&plan_.pages[i].origin)) {
            std::optional<std::string> entries = (*maker)->produce(*output_);
            if (!entries) {
                drop(i, (*maker)->name(), "cannot be read; its page is left out");
                continue;
            }
            *entries += "/MediaBox";
            writeRectangle(*entries, (*maker)->mediaBox());
            writeMadePage(i, std::move(*entries));
        }
    }
}

void DocumentWriter::writeMadePage(std::size_t index, std::string entries) {
    if (const auto& painting = plan_.pages[index].painting) entries = painter_->paintOver(entries, *painting);
    std::string& body = output_->body();
    const std::size_t begin = body.size();
    body += "<</Type/Page/Parent " + std::to_string(tree_->parentOf(index)) + " 0 R" + entries + ">>";
    output_->close(tree_->pageNumber(index), begin);
}

void DocumentWriter::drop(std::size_t page, std::string_view file, std::string_view reason) {
    tree_->drop(page);
    std::string line(file);
    line += ": ";
    line += reason;
    if (std::ranges::find(warnings_, line) == warnings_.end()) warnings_.push_back(std::move(line));
}

}  // namespace

WriteResult writeDocument(const DocumentPlan& plan, const std::string& target) {
    WriteResult result;
    if (plan.pages.empty()) {
        result.warnings.push_back(target + ": not written, since the document has no page");
        return result;
    }
    for (bool repeat = true; repeat;) {
        result = WriteResult();
        const auto file = OutputFile::create(target);
        if (!file) break;
        DocumentWriter writer(plan, *file);
        const bool complete = writer.write(result);
        repeat = writer.mustRepeat();
        if (complete && !repeat) result.written = file->commit(plan.sync);
    }
    if (!result.written) result.warnings.push_back(target + ": could not be written; what stood there is untouched");
    return result;
}

}  // namespace quillon::pdf
