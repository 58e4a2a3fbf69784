#pragma once

#include "com/activation.h"

#include <velcoran/velcoran.h>

#include <QDate>
#include <QString>

namespace velcoran::host {

/// The component as a host uses it: found by its programmatic identifier, one object of its class.
class ComponentClient {
public:
    /// @param libraryPath  the library; empty for the one beside the program, else the registered one
    /// @throws Error kClassNotRegistered when there is none
    explicit ComponentClient(const QString& libraryPath = {});

    /// Where the host registers its own message class and dialogs.
    [[nodiscard]] com::IHostObjects& hostObjects() const { return *m_hostObjects; }
    /// Opens the report window, or sets the open one up again.
    /// @throws Error as the component tells it
    void incarca(const QString& kind, const com::Ref<IConnection>& connection, QDate date, const QString& soc);

private:
    com::ActivatedClass m_class;
    com::Ref<com::IHostObjects> m_hostObjects;
    com::Ref<_clsVelcoran> m_object;
};

/// The library beside the program (its build tree has both in one folder); empty when there is none.
[[nodiscard]] QString libraryBesideProgram();

}  // namespace velcoran::host
