#include "errors.h"

namespace velcoran::provider {

using namespace Qt::StringLiterals;

base::Error closedConnectionError() {
    return {base::kInvalidConnection, u"Conexiunea la baza de date este închisă."_s};
}

base::Error closedRowsError() {
    return {base::kOperationOnClosedObject, u"Operațiunea nu este permisă: interogarea nu este pornită."_s};
}

base::Error cursorLocationError() {
    return {base::kInvalidProcedureCall, u"Seturile de înregistrări se deschid numai la client."_s};
}

base::Error foreignConnectionError() {
    return {base::kInvalidProcedureCall, u"Conexiunea nu este a acestui furnizor de date."_s};
}

QString conflictText(Conflict conflict, const QString& words) {
    const QString kind = conflict == Conflict::Deadlock ? u"interblocare"_s : u"timpul de așteptare a expirat"_s;
    return u"Baza de date este blocată de altă operațiune (%1). Reîncercați.\n%2"_s.arg(kind, words);
}

}  // namespace velcoran::provider
