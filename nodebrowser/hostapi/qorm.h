#ifndef NODEBROWSER_HOSTAPI_QORM_H
#define NODEBROWSER_HOSTAPI_QORM_H

// The host's object database: identified objects in data sources, reached through handles that
// outlive the objects they name. Declarations only; the host's library defines them and
// instantiates the templates for the types named at each. Everything runs on the GUI thread;
// questions run no event loop and change nothing.

#include "framework.h"

#include <exception>
#include <string>
#include <vector>

namespace qorm {

class IDataSource;
class IDataModelMgr;
class IDbObject;
class IHelper;
class IQormInstance;
class ITypeAsset;
class IValueAsset;

/// A fixed 128-bit identifier in its text form, "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX".
class UID
{
public:
    explicit UID(char const* text);

    /// Zero-terminated; valid as long as the object.
    char const* GetStr() const;
    bool operator==(UID const& other) const;

private:
    std::string m_Text;
};

/// The UID that names nothing, all digits 0.
UID const& UID_Null();
/// The type that every resource is of; used in queries.
UID const& UID_Resource();

/// Identifier of a database object.
class DbObjectId
{
public:
    /// Takes the text as it is; it is not tested with IsUID.
    explicit DbObjectId(char const* text);

    /// The text given, zero-terminated; valid as long as the object.
    char const* GetStr() const;
    bool operator==(DbObjectId const& other) const;

    /// True for 8-4-4-4-12 hexadecimal digits in either case; false for null.
    static bool IsUID(char const* text);

private:
    std::string m_Text;
};

/// Reference-counted pointer to a service object of the database. The host's library
/// instantiates it for IDataSource, IValueAsset, IDbObject, IDataModelMgr, IHelper,
/// IQormInstance and ITypeAsset.
template <class T>
class QormPtr
{
public:
    QormPtr();
    explicit QormPtr(T* object);
    QormPtr(QormPtr const& other);
    QormPtr& operator=(QormPtr const& other);
    ~QormPtr();

    bool IsNull() const;
    /// Null when empty; nothing is raised.
    T* Get() const;
    /// Raises ExBase::NullPtr when empty.
    T* operator->() const;
    /// Same service object. Two pointers to one data source are equal.
    bool operator==(QormPtr const& other) const;

private:
    T* m_Object;
};

/// Copyable handle to a database object: the database instance and the object's place in its
/// cache. A handle whose object is gone stays safe to hold and to ask. The host's library
/// instantiates it for IDbObject, ITypeAsset and IValueAsset, AssignCast for all pairs.
template <class T>
class QormHandle
{
public:
    /// An invalid handle.
    QormHandle();
    QormHandle(QormPtr<IQormInstance> const& instance, int cacheIndex);
    QormHandle(QormHandle const& other);
    QormHandle& operator=(QormHandle const& other);
    ~QormHandle();

    /// True while the object exists and is of kind T.
    bool IsValid() const;
    /// Raises ExBase::NullPtr when the object is gone.
    T* operator->() const;
    /// Takes over the other handle; invalid afterwards when the object is not of kind T.
    template <class U>
    QormHandle& AssignCast(QormHandle<U> const& other);

    /// Null when the object has none.
    QormPtr<IDataSource> GetDataSource() const;
    DbObjectId GetDbObjectId() const;
    /// Null for an invalid handle.
    QormPtr<IDataModelMgr> GetManager() const;
    /// Null for an invalid handle.
    QormPtr<IQormInstance> GetInstance() const;
    /// -1 for an invalid handle.
    int GetCacheIndex() const;
    /// For ITypeAsset handles only: the asset is in memory. False for an invalid handle.
    bool IsLoaded() const;

private:
    QormPtr<IQormInstance> m_Instance;
    int m_CacheIndex;
};

/// Life of everything that a QormPtr points to.
class IRefCounted
{
public:
    virtual void AddRef() = 0;
    virtual void Release() = 0;

protected:
    virtual ~IRefCounted();
};

/// A place that objects are read from and written to.
class IDataSource : public IRefCounted
{
public:
    /// The access mode that means read-only.
    enum { kReadOnlyAccess = 1 };

    virtual int GetAccessMode() const = 0;
};

/// One identified object.
class IDbObject : public IRefCounted
{
public:
    /// Null when the object belongs to no manager.
    virtual QormPtr<IDataModelMgr> GetDataModelMgr() const = 0;
};

/// An object seen as an asset that types are made of.
class ITypeAsset : public IRefCounted
{
public:
    /// True when the asset is locked against changes.
    virtual bool IsReadOnly() const = 0;
};

/// An object seen as a value; a resource is one that stands for a data source.
class IValueAsset : public IRefCounted
{
public:
    /// Zero-terminated, valid as long as the asset; never null.
    virtual char const* GetName() const = 0;
    virtual QormHandle<IValueAsset> GetAssetHandle() const = 0;
    virtual DbObjectId GetDbObjectId() const = 0;
};

/// One database with its cache of objects.
class IQormInstance : public IRefCounted
{
};

/// One row of a query.
class CQueryResult
{
public:
    explicit CQueryResult(DbObjectId const& objectId);

    DbObjectId GetObjectId() const;

private:
    DbObjectId m_ObjectId;
};

template <class T>
using Vector = std::vector<T>;

/// Queries and look-ups over one database.
class IDataModelMgr : public IRefCounted
{
public:
    /// Appends the rows found. The panel asks one thing only, all objects of a type:
    /// "select object where IS_OF_TYPE_VERSION( {<uid> } )". False for a query that cannot be
    /// run; nothing is appended then.
    virtual bool RunQuery(char const* query, Vector<CQueryResult>& results) = 0;
    /// An invalid handle when there is no such object.
    virtual QormHandle<IDbObject> FindObject(DbObjectId const& objectId) = 0;
    virtual QormPtr<IQormInstance> GetInstance() = 0;
};

/// What can be done to objects of an instance as a whole.
class IHelper : public IRefCounted
{
public:
    /// The helper of the instance; null when the instance is null.
    static QormPtr<IHelper> GetHelper(QormPtr<IQormInstance> const& instance);

    /// Moves the object into the data source. Refusing a read-only or null target, and saying
    /// so, is the helper's business. `withFiles` moves what is stored of it as well; the panel
    /// passes true.
    virtual void MoveToDataSource(QormHandle<IDbObject> const& object,
                                  QormPtr<IDataSource> const& target, bool withFiles) = 0;
};

/// The data source that the resource stands for, or null.
QormPtr<IDataSource> GetDataSourceFromResource(QormHandle<IValueAsset> const& resource);
/// Where the resource lies, with every variable filled in.
std::string GetResourceExpandedURI(QormHandle<IDbObject> const& resource);
/// True when the data source is what the resource stands for.
bool IsSameUri(QormPtr<IDataSource> const& source, QormHandle<IValueAsset> const& resource);

/// The service "RevisionControlUIHelper": source control as a user meets it.
class IRevisionControlUIHelper : public wek::IBase
{
public:
    /// An invalid handle when there is no such object.
    virtual QormHandle<IDbObject> FindObject(DbObjectId const& objectId) = 0;

    /// `checkedOut` tells whether it worked; the panel passes true for `askUser` and ignores
    /// the outcome, which the service reports itself.
    virtual void CheckOut(QormHandle<IDbObject> const& object, bool& checkedOut, bool askUser) = 0;
    /// Lifts the read-only permission of the object's files; the panel passes true.
    virtual void MakeWritable(QormHandle<IDbObject> const& object, bool askUser) = 0;
    /// Shows the object's files in the desktop; the panel passes false for `withDependencies`.
    virtual void ShowFiles(QormHandle<IDbObject> const& object, bool withDependencies) = 0;
};

/// Base of the database's exceptions.
class ExBase : public std::exception
{
public:
    class NullPtr;

    ~ExBase() noexcept override;

    /// What failed and where, in one line.
    std::string const& GetErrorString() const;
    char const* what() const noexcept override;

protected:
    explicit ExBase(std::string const& errorString);

private:
    std::string m_ErrorString;
};

/// Raised when a null database pointer or a handle to an object that is gone is followed. The
/// error string goes to PrintDebugString first unless error reporting is disabled.
class ExBase::NullPtr : public ExBase
{
public:
    /// `what` is the expression that failed.
    NullPtr(char const* what, char const* file, int line);
};

/// While one exists, errors are raised without being printed.
class DisableErrorReportingGuard
{
public:
    DisableErrorReportingGuard();
    ~DisableErrorReportingGuard();

    static bool IsErrorReportingDisabled();

private:
    DisableErrorReportingGuard(DisableErrorReportingGuard const&);
    DisableErrorReportingGuard& operator=(DisableErrorReportingGuard const&);
};

/// Writes a line to the host's debug output.
void PrintDebugString(std::string const& text);

} // namespace qorm

#endif
