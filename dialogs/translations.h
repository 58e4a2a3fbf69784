#pragma once

#include <QString>

#include <span>

namespace velcoran::dialogs {

/// A text of Qt's dialogs and what it is in Romanian.
struct TranslationRow {
    const char* context;
    const char* source;
    const char16_t* text;
};

/// All of them, by context.
[[nodiscard]] std::span<const TranslationRow> translationRows();
/// The Romanian text; a null one where the table has none.
[[nodiscard]] QString translationOf(const char* context, const char* source);

}  // namespace velcoran::dialogs
