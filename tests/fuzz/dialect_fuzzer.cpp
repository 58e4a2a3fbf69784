// Texts are rewritten by tokens: whatever they are, the database gets something, and a text without anything to rewrite
// as it stands.
#include "fuzzed_text.h"

#include "db/sqlite/dialect.h"
#include "db/sqlite/like_pattern.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text = velcoran::fuzz::textOf(data, size);
    const QString rewritten = velcoran::sqlite::rewrite(text);
    if (!text.contains(u'+') && !text.contains(QStringLiteral("convert"), Qt::CaseInsensitive))
        velcoran::fuzz::expect(rewritten == text, "nothing was to be rewritten");
    (void)velcoran::sqlite::writtenColumnNames(text);
    (void)velcoran::sqlite::isEmptyStatement(text);
    const std::string bytes = text.toStdString();
    const std::size_t half = bytes.size() / 2;
    (void)velcoran::sqlite::LikePattern(bytes.substr(0, half)).matches(bytes.substr(half));
    return 0;
}
