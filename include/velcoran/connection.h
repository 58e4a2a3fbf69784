/// The connection that a host hands to the component: our providers implement it, and so may a host over a connection
/// of its own. Rows travel in column blocks, never cell by cell.
///
/// A host may turn its event loop inside a call on the window's thread: the window takes no input then, Incarca is
/// refused with 5, and a close of the window follows when the call has returned. From a connection without
/// IFreeThreadedConnection every call but those of the report engine comes on that thread.
///
/// Every call is synchronous. Cancel may be called from any thread at any time; all other functions are called by one
/// thread at a time, which is not always the same one: from Raporteaza to the end of loading, the report engine uses
/// the connection from a thread of its own.
///
/// A failing call returns a negative code; number and description come from com::IErrorSource on the same object.
#pragma once

#include <velcoran/com.h>

namespace velcoran {

/// How the values of a column lie in one block. A column may change its type from block to block (an embedded database
/// has no column types): a block whose values have no common type is Text.
enum class ColumnType : std::int32_t {
    Int64 = 1,      ///< std::int64_t each
    Decimal64 = 2,  ///< std::int64_t mantissas; value = mantissa / 10^scale
    Decimal128 =
        3,       ///< 16-byte two's complement mantissas, little end first, 16-byte aligned; value = mantissa / 10^scale
    Double = 4,  ///< double each
    Text = 5,    ///< UTF-16, all values in one buffer, with rowCount + 1 offsets in units
    DateTime = 6,  ///< std::int64_t microseconds since 1 January 1970, no time zone
};

/// One column of one block. All pointers belong to whoever filled the block and are valid until its next call.
struct ColumnBlock {
    ColumnType type;
    std::int32_t scale;            ///< decimal places of the Decimal types, 0 to 38; 0 otherwise
    const std::uint8_t* nulls;     ///< one byte a row, 1 for null; null pointer when the block holds no null
    const void* values;            ///< by type; for Text the characters, char16_t
    const std::uint32_t* offsets;  ///< Text only: where each value starts, and where the last one ends
};

struct RowBlock {
    std::uint32_t rowCount;
    std::uint32_t columnCount;
    const ColumnBlock* columns;
};

/// A column as the statement describes it before any row is read.
struct ColumnDescription {
    const char16_t* name;  ///< not terminated
    std::uint32_t nameLength;
    ColumnType type;  ///< what is to be expected; blocks decide
    std::int32_t scale;
};

/// Forward-only rows of a statement that runs.
struct IRows : com::IUnknown {
    static constexpr com::Guid kId{0x5E1D3B72, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};

    /// Describes the columns. The descriptions live as long as the object.
    virtual com::HResult Columns(const ColumnDescription** columns, std::uint32_t* count) = 0;
    /// Reads on. At most maxRows rows, fewer where a cap in bytes is reached; never none before the end.
    /// @return kOk with rows; kFalse and rowCount 0 at the end
    virtual com::HResult Fetch(std::uint32_t maxRows, const RowBlock** block) = 0;
    /// Makes a running or the next Fetch (or Run) fail soon. From any thread.
    virtual com::HResult Cancel() = 0;

protected:
    ~IRows() = default;
};

/// A prepared statement. Columns works before Run; Fetch needs Run.
struct IStatement : IRows {
    static constexpr com::Guid kId{0x5E1D3B73, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};

    /// Starts the statement, or starts it again from its first row.
    virtual com::HResult Run() = 0;

protected:
    ~IStatement() = default;
};

/// Values of IConnection::State, as published for connection objects.
constexpr std::int32_t kStateClosed = 0;
constexpr std::int32_t kStateOpen = 1;

/// Values of IConnection::OpenRowset, as published for row sets.
constexpr std::int32_t kCursorClient = 3;
constexpr std::int32_t kCursorKeyset = 1;
constexpr std::int32_t kLockOptimistic = 3;

struct IConnection : com::IUnknown {
    static constexpr com::Guid kId{0x5E1D3B74, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};

    /// kStateOpen or kStateClosed. Asked on the window's thread before each run of a report, which a closed connection
    /// ends with 3709, and at no other time. Any thread.
    virtual std::int32_t State() = 0;
    /// Runs a statement. @param rows  its rows, counted
    virtual com::HResult Execute(com::Bstr text, IRows** rows) = 0;
    /// Runs a statement for a row set. With kCursorClient the component reads the rows to the end and keeps them
    /// itself; no other cursor location is asked for.
    virtual com::HResult OpenRowset(com::Bstr text, std::int32_t cursorLocation, std::int32_t cursorType,
                                    std::int32_t lockType, IRows** rows) = 0;
    /// Prepares a statement: a bad one fails here, and its columns are known before it runs.
    virtual com::HResult Prepare(com::Bstr text, IStatement** statement) = 0;
    /// Cancels whatever runs on the connection. Any thread; kOk also when nothing runs.
    virtual com::HResult Cancel() = 0;

protected:
    ~IConnection() = default;
};

/// Marks a connection whose Execute and OpenRowset may be called from a thread other than the window's: the window then
/// stays alive and cancellable while they run. Without it they are called on the window's own thread. No function of
/// its own; a connection answers to the identifier.
struct IFreeThreadedConnection : com::IUnknown {
    static constexpr com::Guid kId{0x5E1D3B75, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};

protected:
    ~IFreeThreadedConnection() = default;
};

}  // namespace velcoran
