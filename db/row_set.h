#pragma once

#include "connection.h"

#include <QString>
#include <QStringList>

#include <memory>

namespace velcoran::db {

/// Client-side row set: every row of a statement, read to the end, with record count, movement and a filter. Values are
/// kept in columns; a cell's text is made when it is asked for.
///
/// Texts of values: integers and decimals as they are, with a point; null is empty; date-times "yyyy-mm-dd hh:mm:ss".
class RowSet {
public:
    RowSet();
    ~RowSet();
    RowSet(RowSet&&) noexcept;
    RowSet& operator=(RowSet&&) noexcept;

    /// Opens the row set: runs the statement and reads all rows. Stands on the first row.
    /// @throws Error of the provider; the row set is closed then
    void open(const Connection& connection, const QString& text, ICallRunner& runner);
    void close();
    [[nodiscard]] bool isOpen() const;

    /// Names of the columns, in order.
    [[nodiscard]] const QStringList& columns() const;
    /// Rows that pass the filter. @throws Error kOperationOnClosedObject
    [[nodiscard]] qsizetype recordCount() const;
    /// @throws Error kNoCurrentRecord when no row passes the filter
    void moveFirst();
    /// @throws Error kNoCurrentRecord when already at the end
    void moveNext();
    [[nodiscard]] bool isEof() const;
    /// Value of the current row as text; nothing for null. @throws Error kNoCurrentRecord at the end
    [[nodiscard]] std::optional<QString> field(int column) const;

    /// Text of a cell. @param row 0 to recordCount() - 1, among the rows that pass; null reads as the empty text
    [[nodiscard]] QString cell(qsizetype row, int column) const;

    /// Shows only the rows that pass an expression of the form [column] Like 'text%' (case-insensitive, "%" for any
    /// characters; the column without brackets where it is one word). The empty text shows all. Stands on the first
    /// row.
    /// @throws Error kInvalidProcedureCall (3001 in the published list of row sets) for what cannot be read as such an
    ///         expression - a quote in the text among others - or names no column; the filter stays as it was
    void setFilter(const QString& expression);
    [[nodiscard]] const QString& filter() const;

private:
    struct Data;
    std::shared_ptr<Data> m_data;
};

}  // namespace velcoran::db
