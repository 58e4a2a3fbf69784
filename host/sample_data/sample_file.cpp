#include "sample_file.h"

#include "base/error.h"

namespace velcoran::host {

using namespace Qt::StringLiterals;

void SampleFile::fail(const QString& words) const {
    throw base::Error(base::kPathAccess, u"%1: %2"_s.arg(m_path, words));
}

}  // namespace velcoran::host
