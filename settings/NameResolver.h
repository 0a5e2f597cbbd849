#pragma once

#include <QString>
#include <QStringList>

#include <mutex>
#include <optional>

namespace quillon {

/// The document information of the output: texts with macros in which `%Original_Title%` and its like stand for what
/// the merged document had. An absent text is a null string. Every operation may be called from any thread.
class NameResolver {
public:
    NameResolver() = default;
    NameResolver(const NameResolver&) = delete;
    NameResolver& operator=(const NameResolver&) = delete;

    // The recorded values; absent until they are set.
    [[nodiscard]] QString author() const { return value(author_); }
    void setAuthor(const QString& author) { set(author_, author); }
    [[nodiscard]] QString title() const { return value(title_); }
    void setTitle(const QString& title) { set(title_, title); }
    [[nodiscard]] QString subject() const { return value(subject_); }
    void setSubject(const QString& subject) { set(subject_, subject); }
    [[nodiscard]] QString keywords() const { return value(keywords_); }
    void setKeywords(const QString& keywords) { set(keywords_, keywords); }
    [[nodiscard]] QString creator() const { return value(creator_); }
    void setCreator(const QString& creator) { set(creator_, creator); }

    /// Record what the merged document has. The last call holds.
    void registerTitle(const QString& title) { setTitle(title); }
    void registerAuthor(const QString& author) { setAuthor(author); }
    void registerSubject(const QString& subject) { setSubject(subject); }
    /// The texts of the list with a blank between them; no list, or an empty one, is no value.
    void registerKeywords(const std::optional<QStringList>& keywords);
    void registerCreator(const QString& creator) { setCreator(creator); }

    /// `text` with the macro of its own field replaced everywhere; an empty or absent `text` gives the recorded value,
    /// which may be absent. A value that is missing counts as empty once a text has asked for it, and stays so.
    [[nodiscard]] QString resolveTitle(const QString& text);
    [[nodiscard]] QString resolveAuthor(const QString& text);
    [[nodiscard]] QString resolveSubject(const QString& text);
    [[nodiscard]] QString resolveKeywords(const QString& text);
    /// The name of this program, whatever is recorded or asked.
    [[nodiscard]] QString resolveCreator(const QString& ignored) const;

private:
    [[nodiscard]] QString value(const QString& field) const;
    void set(QString& field, const QString& value);
    [[nodiscard]] QString resolve(const QString& text, const QString& macro, QString& field);

    mutable std::mutex mutex_;  // guards the rest
    QString author_;
    QString title_;
    QString subject_;
    QString keywords_;
    QString creator_;
};

}  // namespace quillon
