#pragma once

#include <velcoran/com.h>

#include <QDate>
#include <QString>

namespace velcoran::com {

/// Owner of one variant: frees its text or releases its object.
class VariantHolder {
public:
    VariantHolder() = default;
    explicit VariantHolder(const QString& text);
    explicit VariantHolder(std::int32_t number);
    /// Shares an object under kUnknown; null stands for "no object".
    explicit VariantHolder(IUnknown* object);
    VariantHolder(const VariantHolder&) = delete;
    VariantHolder(VariantHolder&& other) noexcept;
    VariantHolder& operator=(VariantHolder other) noexcept;
    ~VariantHolder();

    static VariantHolder date(Date date);

    [[nodiscard]] const Variant& get() const { return m_variant; }
    /// Address for a function that returns a variant; what was held is freed first.
    [[nodiscard]] Variant* receive();

private:
    Variant m_variant;
};

/// Frees what a variant owns (not what a reference points to) and leaves it empty.
void clearVariant(Variant& variant);

/// Reads an argument as a text: texts, numbers and truth values; an empty variant is the empty text.
/// @return kOk; kTypeMismatch for null, objects and anything else
HResult readText(const Variant& variant, QString& text);
/// Reads an argument as a date: dates, numbers (days since 30 December 1899), texts of the form "yyyy-mm-dd".
/// @return kOk; kTypeMismatch
HResult readDate(const Variant& variant, Date& date);
/// Reads an argument as an interface. A null object is kOk and null.
/// @return kOk; kTypeMismatch when it is no object or lacks the interface
HResult readObject(const Variant& variant, const Guid& id, void** object);

/// Day of a date value, its time of day dropped; an invalid date beyond the range of dates (100 to 9999).
[[nodiscard]] QDate dayOf(Date date);
[[nodiscard]] Date dateOf(const QDate& day);

}  // namespace velcoran::com
