#pragma once

#include <QByteArray>
#include <QString>

#include <ostream>

namespace velcoran::tests {

/// Full path of a file under tests/data.
[[nodiscard]] QString dataPath(const QString& name);

/// Contents of a file under tests/data. A missing file fails the test.
[[nodiscard]] QByteArray readData(const QString& name);

/// Compares with a golden file under tests/data. A missing one fails; with VELCORAN_GOLDEN=write in the environment the
/// file is written instead (make golden; never for statements).
void expectGolden(const QString& name, const QByteArray& actual);

}  // namespace velcoran::tests

/// Lets GoogleTest print texts.
inline void PrintTo(const QString& text, std::ostream* stream) { *stream << '"' << text.toStdString() << '"'; }
