#include "component_client.h"

#include "com/error_information.h"
#include "com/variant.h"
#include "db/connection.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velcoran::host {

ComponentClient::ComponentClient(const QString& libraryPath)
    : m_class(com::findClass(QString::fromUtf16(kProgIdVelcoran),
                             libraryPath.isEmpty() ? libraryBesideProgram() : libraryPath)),
      m_hostObjects(m_class.factory.as<com::IHostObjects>()) {
    if (!m_hostObjects)
        throw base::Error(base::kClassNotRegistered, m_class.library->path() + u" takes no objects of a host"_s);
}

void ComponentClient::incarca(const QString& kind, const com::Ref<IConnection>& connection, QDate date,
                              const QString& soc) {
    if (!m_object) {
        const com::HResult created =
            m_class.factory->CreateInstance(nullptr, _clsVelcoran::kId, m_object.receiveVoid());
        if (com::failed(created)) throw db::errorOf(created, m_class.factory.get());
    }
    const com::HResult result =
        m_object->Incarca(com::toText(kind).get(), connection.get(), com::dateOf(date), com::toText(soc).get());
    if (com::failed(result)) throw db::errorOf(result, m_object.get());
}

QString libraryBesideProgram() {
    // The build tree has both in one folder, an installation has them in bin and lib.
    for (const char* folder : {"/", "/../" VELCORAN_LIBRARY_FOLDER "/"}) {
        const QString path = QCoreApplication::applicationDirPath() + QString::fromLatin1(folder) + u"libvelcoran.so"_s;
        if (QFileInfo::exists(path)) return QDir::cleanPath(path);
    }
    return {};
}

}  // namespace velcoran::host
