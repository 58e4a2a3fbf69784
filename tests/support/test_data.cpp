#include "test_data.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace velcoran::tests {

QString dataPath(const QString& name) { return QStringLiteral(VELCORAN_TEST_DATA) + u'/' + name; }

QByteArray readData(const QString& name) {
    QFile file(dataPath(name));
    if (!file.open(QIODevice::ReadOnly)) {
        ADD_FAILURE() << "missing test data: " << qPrintable(name);
        return {};
    }
    return file.readAll();
}

void expectGolden(const QString& name, const QByteArray& actual) {
    if (qEnvironmentVariable("VELCORAN_GOLDEN") == u"write") {
        QDir().mkpath(QFileInfo(dataPath(name)).path());
        QFile file(dataPath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(name);
        file.write(actual);
        return;
    }
    EXPECT_EQ(readData(name).toStdString(), actual.toStdString()) << "golden file: " << qPrintable(name);
}

}  // namespace velcoran::tests
