#include "base/error.h"

namespace velcoran::base {

Error::Error(std::int32_t number, QString description, QString source)
    : m_number(number),
      m_description(std::move(description)),
      m_source(std::move(source)),
      m_what((QString::number(number) + QStringLiteral(": ") + m_description).toUtf8()) {}

}  // namespace velcoran::base
