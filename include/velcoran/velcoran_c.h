/* The contract between a host in C and the component: interfaces as tables of functions, in the published layout.
 * Made by tools/make-c-header from the C++ headers, which say what everything is for. */
/* clang-format off */
#ifndef VELCORAN_C_H
#define VELCORAN_C_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef int32_t velcoran_HResult;
typedef uint16_t* velcoran_Bstr; /* UTF-16 with a 32-bit count of bytes in front; allocated with malloc */
typedef uint16_t velcoran_VariantType;
typedef double velcoran_Date; /* days since 30 December 1899 */

typedef struct velcoran_IUnknown velcoran_IUnknown;
typedef struct velcoran_IClassFactory velcoran_IClassFactory;
typedef struct velcoran_IDispatch velcoran_IDispatch;
typedef struct velcoran_IErrorSource velcoran_IErrorSource;
typedef struct velcoran_IHostObjects velcoran_IHostObjects;
typedef struct velcoran_IRows velcoran_IRows;
typedef struct velcoran_IStatement velcoran_IStatement;
typedef struct velcoran_IConnection velcoran_IConnection;
typedef struct velcoran_IFreeThreadedConnection velcoran_IFreeThreadedConnection;
typedef struct velcoran__clsVelcoran velcoran__clsVelcoran;
typedef struct velcoran_IWindowEvents velcoran_IWindowEvents;
typedef struct velcoran_IReportWindow velcoran_IReportWindow;
typedef struct velcoran_IMesaje velcoran_IMesaje;
typedef struct velcoran_IExportDialog velcoran_IExportDialog;
typedef struct velcoran_IPrintDialog velcoran_IPrintDialog;
typedef struct velcoran_IPrinterSetupDialog velcoran_IPrinterSetupDialog;

typedef int32_t velcoran_ColumnType;
#define velcoran_ColumnType_Int64 1
#define velcoran_ColumnType_Decimal64 2
#define velcoran_ColumnType_Decimal128 3
#define velcoran_ColumnType_Double 4
#define velcoran_ColumnType_Text 5
#define velcoran_ColumnType_DateTime 6

typedef struct velcoran_ExceptionInformation velcoran_ExceptionInformation;

typedef struct velcoran_Guid {
    uint32_t data1;
    uint16_t data2;
    uint16_t data3;
    uint8_t data4[8];
} velcoran_Guid;

typedef struct velcoran_Variant {
    velcoran_VariantType type;
    uint16_t reserved[3];
    union {
        int64_t int64;
        int32_t int32;
        int16_t int16;
        int16_t boolean;
        double real;
        velcoran_Date date;
        velcoran_Bstr text;
        velcoran_IUnknown* unknown;
        velcoran_IDispatch* dispatch;
        velcoran_HResult code;
        void* reference;
    } value;
    void* padding;
} velcoran_Variant;


typedef struct velcoran_CallArguments {
    velcoran_Variant* arguments;
    int32_t* namedArguments;
    uint32_t argumentCount;
    uint32_t namedArgumentCount;
} velcoran_CallArguments;

struct velcoran_ExceptionInformation {
    uint16_t code;
    uint16_t reserved;
    velcoran_Bstr source;
    velcoran_Bstr description;
    velcoran_Bstr helpFile;
    uint32_t helpContext;
    void* reservedPointer;
    velcoran_HResult (*deferredFill)(velcoran_ExceptionInformation*);
    velcoran_HResult result;
};

typedef struct velcoran_ColumnBlock {
    velcoran_ColumnType type;
    int32_t scale;
    const uint8_t* nulls;
    const void* values;
    const uint32_t* offsets;
} velcoran_ColumnBlock;

typedef struct velcoran_RowBlock {
    uint32_t rowCount;
    uint32_t columnCount;
    const velcoran_ColumnBlock* columns;
} velcoran_RowBlock;

typedef struct velcoran_ColumnDescription {
    const uint16_t* name;
    uint32_t nameLength;
    velcoran_ColumnType type;
    int32_t scale;
} velcoran_ColumnDescription;

typedef struct velcoran_ExportFormat {
    int32_t type;
    const uint16_t* name;
    const uint16_t* extension;
} velcoran_ExportFormat;

typedef struct velcoran_PrintChoice {
    velcoran_Bstr printer;
    velcoran_Bstr file;
    int32_t firstPage;
    int32_t lastPage;
    int32_t copies;
    int32_t isCollated;
} velcoran_PrintChoice;

typedef struct velcoran_PrinterSetup {
    velcoran_Bstr printer;
    velcoran_Bstr paper;
    int32_t orientation;
    int32_t left, top, right, bottom;
} velcoran_PrinterSetup;

#define velcoran_kOk (0)
#define velcoran_kFalse (1)
#define velcoran_kNotImplemented ((int32_t)(0x80004001U))
#define velcoran_kNoInterface ((int32_t)(0x80004002U))
#define velcoran_kNullPointer ((int32_t)(0x80004003U))
#define velcoran_kAborted ((int32_t)(0x80004004U))
#define velcoran_kUnspecifiedFailure ((int32_t)(0x80004005U))
#define velcoran_kUnexpected ((int32_t)(0x8000FFFFU))
#define velcoran_kOutOfMemory ((int32_t)(0x8007000EU))
#define velcoran_kInvalidArgument ((int32_t)(0x80070057U))
#define velcoran_kNoAggregation ((int32_t)(0x80040110U))
#define velcoran_kClassNotAvailable ((int32_t)(0x80040111U))
#define velcoran_kClassNotRegistered ((int32_t)(0x80040154U))
#define velcoran_kUnknownInterface ((int32_t)(0x80020001U))
#define velcoran_kMemberNotFound ((int32_t)(0x80020003U))
#define velcoran_kParameterNotFound ((int32_t)(0x80020004U))
#define velcoran_kTypeMismatch ((int32_t)(0x80020005U))
#define velcoran_kUnknownName ((int32_t)(0x80020006U))
#define velcoran_kNoNamedArguments ((int32_t)(0x80020007U))
#define velcoran_kException ((int32_t)(0x80020009U))
#define velcoran_kUnknownLanguage ((int32_t)(0x8002000CU))
#define velcoran_kBadIndex ((int32_t)(0x8002000BU))
#define velcoran_kBadParameterCount ((int32_t)(0x8002000EU))
#define velcoran_kParameterNotOptional ((int32_t)(0x8002000FU))
#define velcoran_kEmpty (0)
#define velcoran_kNull (1)
#define velcoran_kInt16 (2)
#define velcoran_kInt32 (3)
#define velcoran_kDouble (5)
#define velcoran_kDate (7)
#define velcoran_kText (8)
#define velcoran_kDispatch (9)
#define velcoran_kError (10)
#define velcoran_kBool (11)
#define velcoran_kVariant (12)
#define velcoran_kUnknown (13)
#define velcoran_kByReference (0x4000)
#define velcoran_kStateClosed (0)
#define velcoran_kStateOpen (1)
#define velcoran_kCursorClient (3)
#define velcoran_kCursorKeyset (1)
#define velcoran_kLockOptimistic (3)
#define velcoran_kStilPlain (0)
#define velcoran_kStilError (16)
#define velcoran_kStilInformation (64)
#define velcoran_kPortrait (1)
#define velcoran_kLandscape (2)
static const velcoran_Guid velcoran_kClassVelcoran = {0x7B2C9D40, 0x61E5, 0x4F3A, {0x8C, 0x52, 0x0D, 0x9A, 0x6E, 0x17, 0x33, 0xF4}};
static const velcoran_Guid velcoran_kTypeLibraryVelcoran = {0x7B2C9D41, 0x61E5, 0x4F3A, {0x8C, 0x52, 0x0D, 0x9A, 0x6E, 0x17, 0x33, 0xF4}};
static const velcoran_Guid velcoran_kClassMesaje = {0x5E1D3B80, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};
static const velcoran_Guid velcoran_kClassExportDialog = {0x5E1D3B82, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};
static const velcoran_Guid velcoran_kClassPrintDialog = {0x5E1D3B83, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};
static const velcoran_Guid velcoran_kClassPrinterSetupDialog = {0x5E1D3B84, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};

static const velcoran_Guid velcoran_IUnknown_id = {0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
typedef struct velcoran_IUnknown_table {
    velcoran_HResult (*QueryInterface)(velcoran_IUnknown* self, const velcoran_Guid* id, void** object);
    uint32_t (*AddRef)(velcoran_IUnknown* self);
    uint32_t (*Release)(velcoran_IUnknown* self);
} velcoran_IUnknown_table;
struct velcoran_IUnknown {
    const velcoran_IUnknown_table* table;
};

static const velcoran_Guid velcoran_IClassFactory_id = {0x00000001, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
typedef struct velcoran_IClassFactory_table {
    velcoran_HResult (*QueryInterface)(velcoran_IClassFactory* self, const velcoran_Guid* id, void** object);
    uint32_t (*AddRef)(velcoran_IClassFactory* self);
    uint32_t (*Release)(velcoran_IClassFactory* self);
    velcoran_HResult (*CreateInstance)(velcoran_IClassFactory* self, velcoran_IUnknown* outer, const velcoran_Guid* id, void** object);
    velcoran_HResult (*LockServer)(velcoran_IClassFactory* self, int32_t lock);
} velcoran_IClassFactory_table;
struct velcoran_IClassFactory {
    const velcoran_IClassFactory_table* table;
};

static const velcoran_Guid velcoran_IDispatch_id = {0x00020400, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
typedef struct velcoran_IDispatch_table {
    velcoran_HResult (*QueryInterface)(velcoran_IDispatch* self, const velcoran_Guid* id, void** object);
    uint32_t (*AddRef)(velcoran_IDispatch* self);
    uint32_t (*Release)(velcoran_IDispatch* self);
    velcoran_HResult (*GetTypeInfoCount)(velcoran_IDispatch* self, uint32_t* count);
    velcoran_HResult (*GetTypeInfo)(velcoran_IDispatch* self, uint32_t index, uint32_t locale, void** information);
    velcoran_HResult (*GetIDsOfNames)(velcoran_IDispatch* self, const velcoran_Guid* reserved, uint16_t** names, uint32_t count, uint32_t locale, int32_t* identifiers);
    velcoran_HResult (*Invoke)(velcoran_IDispatch* self, int32_t member, const velcoran_Guid* reserved, uint32_t locale, uint16_t flags, velcoran_CallArguments* arguments, velcoran_Variant* result, velcoran_ExceptionInformation* exception, uint32_t* argumentError);
} velcoran_IDispatch_table;
struct velcoran_IDispatch {
    const velcoran_IDispatch_table* table;
};

static const velcoran_Guid velcoran_IErrorSource_id = {0x5E1D3B70, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};
typedef struct velcoran_IErrorSource_table {
    velcoran_HResult (*QueryInterface)(velcoran_IErrorSource* self, const velcoran_Guid* id, void** object);
    uint32_t (*AddRef)(velcoran_IErrorSource* self);
    uint32_t (*Release)(velcoran_IErrorSource* self);
    velcoran_HResult (*LastError)(velcoran_IErrorSource* self, int32_t* number, velcoran_Bstr* description, velcoran_Bstr* source);
} velcoran_IErrorSource_table;
struct velcoran_IErrorSource {
    const velcoran_IErrorSource_table* table;
};

static const velcoran_Guid velcoran_IHostObjects_id = {0x5E1D3B71, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};
typedef struct velcoran_IHostObjects_table {
    velcoran_HResult (*QueryInterface)(velcoran_IHostObjects* self, const velcoran_Guid* id, void** object);
    uint32_t (*AddRef)(velcoran_IHostObjects* self);
    uint32_t (*Release)(velcoran_IHostObjects* self);
    velcoran_HResult (*Register)(velcoran_IHostObjects* self, const velcoran_Guid* classId, velcoran_IClassFactory* factory);
    velcoran_HResult (*Revoke)(velcoran_IHostObjects* self, const velcoran_Guid* classId);
} velcoran_IHostObjects_table;
struct velcoran_IHostObjects {
    const velcoran_IHostObjects_table* table;
};

static const velcoran_Guid velcoran_IRows_id = {0x5E1D3B72, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};
typedef struct velcoran_IRows_table {
    velcoran_HResult (*QueryInterface)(velcoran_IRows* self, const velcoran_Guid* id, void** object);
    uint32_t (*AddRef)(velcoran_IRows* self);
    uint32_t (*Release)(velcoran_IRows* self);
    velcoran_HResult (*Columns)(velcoran_IRows* self, const velcoran_ColumnDescription** columns, uint32_t* count);
    velcoran_HResult (*Fetch)(velcoran_IRows* self, uint32_t maxRows, const velcoran_RowBlock** block);
    velcoran_HResult (*Cancel)(velcoran_IRows* self);
} velcoran_IRows_table;
struct velcoran_IRows {
    const velcoran_IRows_table* table;
};

static const velcoran_Guid velcoran_IStatement_id = {0x5E1D3B73, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};
typedef struct velcoran_IStatement_table {
    velcoran_HResult (*QueryInterface)(velcoran_IStatement* self, const velcoran_Guid* id, void** object);
    uint32_t (*AddRef)(velcoran_IStatement* self);
    uint32_t (*Release)(velcoran_IStatement* self);
    velcoran_HResult (*Columns)(velcoran_IStatement* self, const velcoran_ColumnDescription** columns, uint32_t* count);
    velcoran_HResult (*Fetch)(velcoran_IStatement* self, uint32_t maxRows, const velcoran_RowBlock** block);
    velcoran_HResult (*Cancel)(velcoran_IStatement* self);
    velcoran_HResult (*Run)(velcoran_IStatement* self);
} velcoran_IStatement_table;
struct velcoran_IStatement {
    const velcoran_IStatement_table* table;
};

static const velcoran_Guid velcoran_IConnection_id = {0x5E1D3B74, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};
typedef struct velcoran_IConnection_table {
    velcoran_HResult (*QueryInterface)(velcoran_IConnection* self, const velcoran_Guid* id, void** object);
    uint32_t (*AddRef)(velcoran_IConnection* self);
    uint32_t (*Release)(velcoran_IConnection* self);
    int32_t (*State)(velcoran_IConnection* self);
    velcoran_HResult (*Execute)(velcoran_IConnection* self, velcoran_Bstr text, velcoran_IRows** rows);
    velcoran_HResult (*OpenRowset)(velcoran_IConnection* self, velcoran_Bstr text, int32_t cursorLocation, int32_t cursorType, int32_t lockType, velcoran_IRows** rows);
    velcoran_HResult (*Prepare)(velcoran_IConnection* self, velcoran_Bstr text, velcoran_IStatement** statement);
    velcoran_HResult (*Cancel)(velcoran_IConnection* self);
} velcoran_IConnection_table;
struct velcoran_IConnection {
    const velcoran_IConnection_table* table;
};

static const velcoran_Guid velcoran_IFreeThreadedConnection_id = {0x5E1D3B75, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};
typedef struct velcoran_IFreeThreadedConnection_table {
    velcoran_HResult (*QueryInterface)(velcoran_IFreeThreadedConnection* self, const velcoran_Guid* id, void** object);
    uint32_t (*AddRef)(velcoran_IFreeThreadedConnection* self);
    uint32_t (*Release)(velcoran_IFreeThreadedConnection* self);
} velcoran_IFreeThreadedConnection_table;
struct velcoran_IFreeThreadedConnection {
    const velcoran_IFreeThreadedConnection_table* table;
};

static const velcoran_Guid velcoran__clsVelcoran_id = {0x7B2C9D42, 0x61E5, 0x4F3A, {0x8C, 0x52, 0x0D, 0x9A, 0x6E, 0x17, 0x33, 0xF4}};
typedef struct velcoran__clsVelcoran_table {
    velcoran_HResult (*QueryInterface)(velcoran__clsVelcoran* self, const velcoran_Guid* id, void** object);
    uint32_t (*AddRef)(velcoran__clsVelcoran* self);
    uint32_t (*Release)(velcoran__clsVelcoran* self);
    velcoran_HResult (*GetTypeInfoCount)(velcoran__clsVelcoran* self, uint32_t* count);
    velcoran_HResult (*GetTypeInfo)(velcoran__clsVelcoran* self, uint32_t index, uint32_t locale, void** information);
    velcoran_HResult (*GetIDsOfNames)(velcoran__clsVelcoran* self, const velcoran_Guid* reserved, uint16_t** names, uint32_t count, uint32_t locale, int32_t* identifiers);
    velcoran_HResult (*Invoke)(velcoran__clsVelcoran* self, int32_t member, const velcoran_Guid* reserved, uint32_t locale, uint16_t flags, velcoran_CallArguments* arguments, velcoran_Variant* result, velcoran_ExceptionInformation* exception, uint32_t* argumentError);
    velcoran_HResult (*Incarca)(velcoran__clsVelcoran* self, velcoran_Bstr argTipRaport, velcoran_IConnection* bConn, velcoran_Date DataProgram, velcoran_Bstr Soc);
} velcoran__clsVelcoran_table;
struct velcoran__clsVelcoran {
    const velcoran__clsVelcoran_table* table;
};

static const velcoran_Guid velcoran_IWindowEvents_id = {0x5E1D3B88, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};
typedef struct velcoran_IWindowEvents_table {
    velcoran_HResult (*QueryInterface)(velcoran_IWindowEvents* self, const velcoran_Guid* id, void** object);
    uint32_t (*AddRef)(velcoran_IWindowEvents* self);
    uint32_t (*Release)(velcoran_IWindowEvents* self);
    velcoran_HResult (*Closed)(velcoran_IWindowEvents* self);
    velcoran_HResult (*ConnectionReleased)(velcoran_IWindowEvents* self, velcoran_IConnection* connection);
    velcoran_HResult (*OpenDocument)(velcoran_IWindowEvents* self, velcoran_Bstr document, velcoran_Bstr kind, velcoran_Bstr partner);
} velcoran_IWindowEvents_table;
struct velcoran_IWindowEvents {
    const velcoran_IWindowEvents_table* table;
};

static const velcoran_Guid velcoran_IReportWindow_id = {0x5E1D3B89, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};
typedef struct velcoran_IReportWindow_table {
    velcoran_HResult (*QueryInterface)(velcoran_IReportWindow* self, const velcoran_Guid* id, void** object);
    uint32_t (*AddRef)(velcoran_IReportWindow* self);
    uint32_t (*Release)(velcoran_IReportWindow* self);
    velcoran_HResult (*Advise)(velcoran_IReportWindow* self, velcoran_IWindowEvents* events);
    velcoran_HResult (*Close)(velcoran_IReportWindow* self);
    velcoran_HResult (*Dispatch)(velcoran_IReportWindow* self, uint32_t milliseconds);
    velcoran_HResult (*Fence)(velcoran_IReportWindow* self, velcoran_IConnection* connection, velcoran_IConnection** fenced);
} velcoran_IReportWindow_table;
struct velcoran_IReportWindow {
    const velcoran_IReportWindow_table* table;
};

static const velcoran_Guid velcoran_IMesaje_id = {0x5E1D3B81, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};
typedef struct velcoran_IMesaje_table {
    velcoran_HResult (*QueryInterface)(velcoran_IMesaje* self, const velcoran_Guid* id, void** object);
    uint32_t (*AddRef)(velcoran_IMesaje* self);
    uint32_t (*Release)(velcoran_IMesaje* self);
    velcoran_HResult (*Afiseaza)(velcoran_IMesaje* self, velcoran_Bstr Text, int16_t Stil, int16_t Implicit, velcoran_Bstr Titlu, int32_t rezervat1, int32_t rezervat2, int32_t* rezultat);
} velcoran_IMesaje_table;
struct velcoran_IMesaje {
    const velcoran_IMesaje_table* table;
};

static const velcoran_Guid velcoran_IExportDialog_id = {0x5E1D3B85, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};
typedef struct velcoran_IExportDialog_table {
    velcoran_HResult (*QueryInterface)(velcoran_IExportDialog* self, const velcoran_Guid* id, void** object);
    uint32_t (*AddRef)(velcoran_IExportDialog* self);
    uint32_t (*Release)(velcoran_IExportDialog* self);
    velcoran_HResult (*Choose)(velcoran_IExportDialog* self, uintptr_t window, const velcoran_ExportFormat* formats, uint32_t formatCount, velcoran_Bstr suggestedFile, int32_t* type, velcoran_Bstr* file);
} velcoran_IExportDialog_table;
struct velcoran_IExportDialog {
    const velcoran_IExportDialog_table* table;
};

static const velcoran_Guid velcoran_IPrintDialog_id = {0x5E1D3B86, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};
typedef struct velcoran_IPrintDialog_table {
    velcoran_HResult (*QueryInterface)(velcoran_IPrintDialog* self, const velcoran_Guid* id, void** object);
    uint32_t (*AddRef)(velcoran_IPrintDialog* self);
    uint32_t (*Release)(velcoran_IPrintDialog* self);
    velcoran_HResult (*Choose)(velcoran_IPrintDialog* self, uintptr_t window, int32_t pageCount, velcoran_PrintChoice* choice);
} velcoran_IPrintDialog_table;
struct velcoran_IPrintDialog {
    const velcoran_IPrintDialog_table* table;
};

static const velcoran_Guid velcoran_IPrinterSetupDialog_id = {0x5E1D3B87, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};
typedef struct velcoran_IPrinterSetupDialog_table {
    velcoran_HResult (*QueryInterface)(velcoran_IPrinterSetupDialog* self, const velcoran_Guid* id, void** object);
    uint32_t (*AddRef)(velcoran_IPrinterSetupDialog* self);
    uint32_t (*Release)(velcoran_IPrinterSetupDialog* self);
    velcoran_HResult (*Choose)(velcoran_IPrinterSetupDialog* self, uintptr_t window, velcoran_PrinterSetup* setup);
} velcoran_IPrinterSetupDialog_table;
struct velcoran_IPrinterSetupDialog {
    const velcoran_IPrinterSetupDialog_table* table;
};

/* The library's entry points, to be asked of the loader. */
typedef velcoran_HResult (*velcoran_DllGetClassObject)(const velcoran_Guid* classId, const velcoran_Guid* id, void** object);
typedef velcoran_HResult (*velcoran_DllCanUnloadNow)(void);
typedef velcoran_HResult (*velcoran_DllRegisterServer)(void);
typedef velcoran_HResult (*velcoran_DllUnregisterServer)(void);

#ifdef __cplusplus
}
#endif

#endif
