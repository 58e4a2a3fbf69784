#pragma once

#include <velcoran/com.h>

#include "com/error_information.h"

#include <utility>

namespace velcoran::tests {

/// Owner of one variant: frees its text or releases its object.
class VariantHolder {
public:
    VariantHolder() = default;
    explicit VariantHolder(const QString& text) {
        m_variant.type = com::kText;
        m_variant.value.text = com::toText(text).release();
    }
    explicit VariantHolder(std::int32_t number) {
        m_variant.type = com::kInt32;
        m_variant.value.int32 = number;
    }
    /// Shares an object under kUnknown; null stands for "no object".
    explicit VariantHolder(com::IUnknown* object) {
        m_variant.type = com::kUnknown;
        m_variant.value.unknown = com::Ref<com::IUnknown>(object).release();
    }
    VariantHolder(const VariantHolder&) = delete;
    VariantHolder(VariantHolder&& other) noexcept : m_variant(std::exchange(other.m_variant, com::Variant())) {}
    VariantHolder& operator=(VariantHolder other) noexcept {
        std::swap(m_variant, other.m_variant);
        return *this;
    }
    ~VariantHolder() { clear(); }

    static VariantHolder date(com::Date date) {
        VariantHolder holder;
        holder.m_variant.type = com::kDate;
        holder.m_variant.value.date = date;
        return holder;
    }

    [[nodiscard]] const com::Variant& get() const { return m_variant; }
    /// Address for a function that returns a variant; what was held is freed first.
    [[nodiscard]] com::Variant* receive() {
        clear();
        return &m_variant;
    }

private:
    void clear() {
        const com::Variant old = std::exchange(m_variant, com::Variant());
        const bool isObject = old.type == com::kUnknown || old.type == com::kDispatch;
        if (old.type == com::kText) com::freeText(old.value.text);
        if (isObject && old.value.unknown != nullptr) old.value.unknown->Release();
    }

    com::Variant m_variant;
};

}  // namespace velcoran::tests
