#pragma once

#include <QStringView>

namespace velcoran::lookup {

/// The working year, in the first column of the first row.
inline constexpr QStringView kYearStatement = u"SELECT An FROM An";
/// The warehouses as cmbDepozit lists them, "1 - Central".
inline constexpr QStringView kWarehouseStatement =
    u" SELECT str(Depozite.Depozit,len(Depozite.Depozit),0) + ' - ' + Depozite.[Denumire Depozit] FROM Depozite";

}  // namespace velcoran::lookup
