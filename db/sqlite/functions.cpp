#include "functions.h"

#include "base/decimal.h"
#include "base/error.h"
#include "db/provider/utf16.h"
#include "exact_average.h"
#include "like_pattern.h"

#include <QString>

#include <sqlite3.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <span>

namespace velcoran::sqlite {

namespace {

using Arguments = std::span<sqlite3_value*>;

/// Runs the body of a function: what it throws becomes the statement's error.
template <class Body>
void guarded(sqlite3_context* context, Body body) noexcept {
    try {
        body();
    } catch (const std::bad_alloc&) {
        sqlite3_result_error_nomem(context);
    } catch (...) {
        sqlite3_result_error(context, "the function failed", -1);
    }
}

bool anyNull(Arguments arguments) {
    return std::any_of(arguments.begin(), arguments.end(),
                       [](sqlite3_value* one) { return sqlite3_value_type(one) == SQLITE_NULL; });
}

std::string_view textOf(sqlite3_value* value) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    if (text == nullptr) return {};
    return {text, static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

/// A value as a pattern or a length sees it; a real in the digits that its column shows.
class ShownText {
public:
    explicit ShownText(sqlite3_value* value) {
        if (sqlite3_value_type(value) == SQLITE_FLOAT) {
            m_real = base::realText(sqlite3_value_double(value));
            m_view = m_real;
        } else {
            m_view = textOf(value);
        }
    }
    ShownText(const ShownText&) = delete;
    ShownText& operator=(const ShownText&) = delete;
    [[nodiscard]] std::string_view view() const { return m_view; }

private:
    std::string m_real;
    std::string_view m_view;
};

void giveText(sqlite3_context* context, std::string_view text) {
    sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

// --- str -------------------------------------------------------------------------------------------------------------

constexpr std::int64_t kStrLength = 10;
constexpr std::int64_t kMaxStrLength = 8000;
constexpr std::int64_t kMaxStrDecimals = 16;

/// A number with exactly so many decimal places, rounded half away from zero.
std::string fixedText(const base::Decimal& number, int places) {
    return number.rounded(places).toText(places).toStdString();
}

/// The number right-justified; decimals give way where the whole number would not fit with them.
std::string strText(const base::Decimal& number, std::int64_t length, std::int64_t decimals) {
    const std::string whole = fixedText(number, 0);
    const auto wholeLength = static_cast<std::int64_t>(whole.size());
    const std::int64_t room = std::clamp<std::int64_t>(length - wholeLength - 1, 0, decimals);
    std::string text = fixedText(number, static_cast<int>(room));
    const auto width = static_cast<std::size_t>(length);
    if (text.size() > width) text = whole;
    if (text.size() > width) return std::string(width, '*');
    return std::string(width - text.size(), ' ') + text;
}

void strFunction(sqlite3_context* context, int count, sqlite3_value** values) {
    guarded(context, [&] {
        const Arguments arguments(values, static_cast<std::size_t>(count));
        if (anyNull(arguments)) return;
        const std::int64_t length = count > 1 ? sqlite3_value_int64(values[1]) : kStrLength;
        const std::int64_t decimals = count > 2 ? sqlite3_value_int64(values[2]) : 0;
        if (length <= 0 || length > kMaxStrLength || decimals < 0) return;
        std::optional<base::ShortDecimal> number;
        const int type = sqlite3_value_numeric_type(values[0]);
        if (type == SQLITE_INTEGER) number = base::ShortDecimal{sqlite3_value_int64(values[0]), 0};
        if (type == SQLITE_FLOAT) number = base::ShortDecimal::ofReal(sqlite3_value_double(values[0]));
        if (type == SQLITE_TEXT || type == SQLITE_BLOB) {
            sqlite3_result_error(context, "Error converting data type nvarchar to float.", -1);
        } else if (!number) {
            giveText(context, std::string(static_cast<std::size_t>(length), '*'));
        } else {
            giveText(context, strText(*number, length, std::min(decimals, kMaxStrDecimals)));
        }
    });
}

// --- len -------------------------------------------------------------------------------------------------------------

void lenFunction(sqlite3_context* context, int, sqlite3_value** values) {
    guarded(context, [&] {
        if (sqlite3_value_type(values[0]) == SQLITE_NULL) return;
        const ShownText shown(values[0]);
        std::string_view text = shown.view();
        while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
        const auto isStart = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; };
        sqlite3_result_int64(context, std::count_if(text.begin(), text.end(), isStart));
    });
}

// --- day_text --------------------------------------------------------------------------------------------------------

bool isDay(std::string_view text) {
    constexpr std::string_view kForm = "dddd-dd-dd";
    if (text.size() < kForm.size()) return false;
    for (std::size_t i = 0; i < kForm.size(); ++i) {
        const bool isDigit = text[i] >= '0' && text[i] <= '9';
        if (kForm[i] == 'd' ? !isDigit : text[i] != '-') return false;
    }
    return text.size() == kForm.size() || text[kForm.size()] == ' ' || text[kForm.size()] == 'T';
}

void dayTextFunction(sqlite3_context* context, int count, sqlite3_value** values) {
    guarded(context, [&] {
        const Arguments arguments(values, static_cast<std::size_t>(count));
        if (anyNull(arguments) || sqlite3_value_type(values[0]) != SQLITE_TEXT) return;
        const std::string_view date = textOf(values[0]);
        if (!isDay(date)) return;
        char text[] = "dd/mm/yyyy";
        constexpr std::size_t kLength = sizeof text - 1;
        std::copy_n(date.data() + 8, 2, text);
        std::copy_n(date.data() + 5, 2, text + 3);
        std::copy_n(date.data(), 4, text + 6);
        const std::int64_t length = count > 1 ? sqlite3_value_int64(values[1]) : static_cast<std::int64_t>(kLength);
        const auto shown = static_cast<std::size_t>(std::clamp<std::int64_t>(length, 0, kLength));
        giveText(context, {text, shown});
    });
}

// --- like ------------------------------------------------------------------------------------------------------------

void likeFunction(sqlite3_context* context, int count, sqlite3_value** values) {
    guarded(context, [&] {
        const Arguments arguments(values, static_cast<std::size_t>(count));
        if (anyNull(arguments)) return;
        // A pattern that stays the same for the whole statement is read once.
        auto* pattern = static_cast<LikePattern*>(sqlite3_get_auxdata(context, 0));
        std::unique_ptr<LikePattern> fresh;
        const bool isKept = count == 2;
        if (pattern == nullptr || !isKept) {
            char32_t escape = 0;
            if (count > 2) {
                const std::string_view text = textOf(values[2]);
                const char* at = text.data();
                if (!text.empty()) escape = provider::nextCharacter(at, text.data() + text.size());
            }
            fresh = std::make_unique<LikePattern>(ShownText(values[0]).view(), escape);
            pattern = fresh.get();
        }
        sqlite3_result_int(context, pattern->matches(ShownText(values[1]).view()) ? 1 : 0);
        if (fresh && isKept)
            sqlite3_set_auxdata(context, 0, fresh.release(), [](void* one) { delete static_cast<LikePattern*>(one); });
    });
}

// --- avg -------------------------------------------------------------------------------------------------------------

void averageStep(sqlite3_context* context, int, sqlite3_value** values) {
    const int type = sqlite3_value_numeric_type(values[0]);
    if (type == SQLITE_NULL) return;
    auto* average = static_cast<ExactAverage*>(sqlite3_aggregate_context(context, sizeof(ExactAverage)));
    if (average == nullptr) {
        sqlite3_result_error_nomem(context);
        return;
    }
    guarded(context, [&] {
        if (type == SQLITE_INTEGER) {
            average->add(static_cast<std::int64_t>(sqlite3_value_int64(values[0])));
        } else if (type == SQLITE_FLOAT) {
            average->add(sqlite3_value_double(values[0]));
        } else {
            sqlite3_result_error(context, "Operand data type nvarchar is invalid for avg operator.", -1);
        }
    });
}

void averageResult(sqlite3_context* context) {
    guarded(context, [&] {
        const auto* average = static_cast<const ExactAverage*>(sqlite3_aggregate_context(context, 0));
        if (average == nullptr || average->count == 0) return;
        if (average->isMixed) {
            sqlite3_result_double(context, average->mixedResult());
        } else if (average->isReal) {
            sqlite3_result_double(context, average->real);
        } else {
            sqlite3_result_int64(context, average->integer);
        }
    });
}

struct Registration {
    const char* name;
    int argumentCount;
    void (*function)(sqlite3_context*, int, sqlite3_value**);
    void (*step)(sqlite3_context*, int, sqlite3_value**);
    void (*result)(sqlite3_context*);
};

constexpr Registration kFunctions[] = {
    {"str", 1, strFunction, nullptr, nullptr},          {"str", 2, strFunction, nullptr, nullptr},
    {"str", 3, strFunction, nullptr, nullptr},          {"len", 1, lenFunction, nullptr, nullptr},
    {"day_text", 1, dayTextFunction, nullptr, nullptr}, {"day_text", 2, dayTextFunction, nullptr, nullptr},
    {"like", 2, likeFunction, nullptr, nullptr},        {"like", 3, likeFunction, nullptr, nullptr},
    {"avg", 1, nullptr, averageStep, averageResult},
};

}  // namespace

void registerFunctions(sqlite3* database) {
    for (const Registration& one : kFunctions) {
        const int result = sqlite3_create_function_v2(database, one.name, one.argumentCount,
                                                      SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS, nullptr,
                                                      one.function, one.step, one.result, nullptr);
        if (result != SQLITE_OK) throw base::Error(base::kProviderFailure, QString::fromUtf8(sqlite3_errmsg(database)));
    }
}

}  // namespace velcoran::sqlite
