#ifndef NODEBROWSER_HOSTAPI_QORM_H
#define NODEBROWSER_HOSTAPI_QORM_H

/// @file
/// The contract's object database: identified objects in data sources, reached through handles that
/// outlive the objects they name.
///
/// These are declarations only; the host's library defines them and instantiates the templates for
/// the types named at each. The panel calls them, on the GUI thread. Unless a declaration says
/// otherwise:
///
/// - Texts are 8-bit, in the encoding described in datamodel.h, and never null.
/// - Nothing runs an event loop, sends notifications or changes anything, except
///   IHelper::MoveToDataSource and the three commands of IRevisionControlUIHelper. These may
///   prompt, and the host may delete the panel, or replace or close its library, meanwhile: the
///   panel handles that. They report their outcome themselves; the panel ignores it.
/// - An invalid handle and a null pointer raise ExBase::NullPtr when dereferenced; all their other
///   functions return an empty value: an empty text, false, a null pointer, an invalid handle. So
///   does a function that is given one. The panel does not catch exceptions.
/// - Handles outlive the panel: it keeps those of the application's two components as long as the
///   process, and releases them after main().

#include "framework.h"

#include <exception>
#include <string>
#include <vector>

#ifdef __GNUC__
// In a shared library of the host everything declared here is visible, whatever it hides else.
#pragma GCC visibility push(default)
#endif

/// The object database. The rules that hold for all of it stand in qorm.h.
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
    /// Stores the text unchecked.
    explicit UID(char const* text);

    /// The text given, zero-terminated; valid as long as the object.
    char const* GetStr() const;
    /// The same number, in either case of the digits. The panel compares none.
    bool operator==(UID const& other) const;

private:
    std::string m_Text;
};

/// The UID with all digits 0, which no object has. Passed to CommitToDisk.
UID const& UID_Null();
/// The type of all resources; the host may choose any UID. Used in the query for "Compound
/// source".
UID const& UID_Resource();

/// Identifier of a database object.
class DbObjectId
{
public:
    /// Stores the text unchecked; it may be empty or fail IsUID.
    explicit DbObjectId(char const* text);

    /// The text given, zero-terminated; valid as long as the object.
    char const* GetStr() const;
    /// The same UID in either case of its digits, or the same text. The panel compares none.
    bool operator==(DbObjectId const& other) const;

    /// True for 8-4-4-4-12 hexadecimal digits in either case; false for null. The panel calls
    /// it for the UID text of each item, and looks up database objects for the well-formed ones
    /// only.
    static bool IsUID(char const* text);

private:
    /// The text given, if the host knows it to be valid for the whole process; null for a copy.
    char const* m_Kept = nullptr;
    std::string m_Text;
};

/// Reference-counted pointer to a service object of the database. The host's library
/// instantiates it for IDataSource, IValueAsset, IDbObject, IDataModelMgr, IHelper,
/// IQormInstance and ITypeAsset.
template <class T>
class QormPtr
{
public:
    /// Null.
    QormPtr();
    /// Adds a reference; the caller keeps its own. Null makes a null pointer.
    explicit QormPtr(T* object);
    /// @{

    /// Shares the object of the other one, if it has one.
    QormPtr(QormPtr const& other);
    QormPtr& operator=(QormPtr const& other);
    /// @}

    /// Gives the reference back.
    ~QormPtr();

    /// There is no object.
    bool IsNull() const;
    /// Valid as long as the pointer; null when there is no object. Nothing is raised.
    T* Get() const;
    /// Raises ExBase::NullPtr when there is no object.
    T* operator->() const;
    /// Same object, or both null. Two pointers to one data source are equal, wherever they come
    /// from.
    bool operator==(QormPtr const& other) const;

private:
    T* m_Object;
};

/// Copyable handle to a database object: the database instance and the object's place in its
/// cache. A handle whose object is gone stays safe to keep and to call. The host's library
/// instantiates it for IDbObject, ITypeAsset and IValueAsset, AssignCast for all pairs.
template <class T>
class QormHandle
{
public:
    /// An invalid handle.
    QormHandle();
    /// For the host's library, which chooses the numbers. Neither is checked.
    QormHandle(QormPtr<IQormInstance> const& instance, int cacheIndex);
    /// @{

    /// Names the same object, if any.
    QormHandle(QormHandle const& other);
    QormHandle& operator=(QormHandle const& other);
    /// @}
    ~QormHandle();

    /// True while the object exists and is of kind T.
    bool IsValid() const;
    /// The object, valid as long as it exists. Raises ExBase::NullPtr for an invalid handle.
    T* operator->() const;
    /// Assigns the other handle; invalid afterwards when the object is not of kind T, or the other
    /// handle is invalid. Nothing is raised.
    template <class U>
    QormHandle& AssignCast(QormHandle<U> const& other);

    /// The data source that holds the object; null for an invalid handle. An object that the panel
    /// finds for one of its items must have one: an exception aborts the rebuild otherwise.
    QormPtr<IDataSource> GetDataSource() const;
    /// With the empty text for an invalid handle.
    DbObjectId GetDbObjectId() const;
    /// Null for an invalid handle. The panel dereferences it for an object that is moved.
    QormPtr<IDataModelMgr> GetManager() const;
    /// Null for an invalid handle.
    QormPtr<IQormInstance> GetInstance() const;
    /// -1 for an invalid handle.
    int GetCacheIndex() const;
    /// For ITypeAsset handles only: the asset is in memory. False for an invalid handle.
    bool IsLoaded() const;

private:
    template <class U>
    friend class QormHandle;

    QormPtr<IQormInstance> m_Instance;
    int m_CacheIndex;
};

/// Reference count of the objects that a QormPtr points to.
class IRefCounted
{
public:
    /// Takes a reference. Called by QormPtr.
    virtual void AddRef() = 0;
    /// Gives one back. Whether the object goes with the last one is its own business.
    virtual void Release() = 0;

protected:
    virtual ~IRefCounted();
};

/// A place that objects are read from and written to.
class IDataSource : public IRefCounted
{
public:
    /// The access mode that has a meaning to the panel.
    enum
    {
        kReadOnlyAccess = 1 ///< nothing in it can be changed
    };

    /// kReadOnlyAccess, or any other value for a data source that can be written.
    virtual int GetAccessMode() const = 0;
};

/// One identified object.
class IDbObject : public IRefCounted
{
public:
    /// Null when the object belongs to no manager. The panel dereferences it when a compound's
    /// menu opens and when its data source changes; null aborts these with an exception.
    /// CNodePalette tests it; it names the data source in tool tips and beside namesakes.
    virtual QormPtr<IDataModelMgr> GetDataModelMgr() const = 0;
};

/// An object seen as an asset that types are made of.
class ITypeAsset : public IRefCounted
{
public:
    /// True when the asset is locked against changes: the panel shows it like an item that ships
    /// with the application. Called for assets that are loaded.
    virtual bool IsReadOnly() const = 0;
};

/// An object seen as a value; a resource is one that stands for a data source.
class IValueAsset : public IRefCounted
{
public:
    /// The entry's text in the menu "Compound source"; valid as long as the asset.
    virtual char const* GetName() const = 0;
    /// The resource's own handle, which goes to GetDataSourceFromResource.
    virtual QormHandle<IValueAsset> GetAssetHandle() const = 0;
    /// By which FindObject of the manager finds the resource again.
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
    /// A row for the object.
    explicit CQueryResult(DbObjectId const& objectId);

    /// The identifier of the object found, which goes to IDataModelMgr::FindObject.
    DbObjectId GetObjectId() const;

private:
    DbObjectId m_ObjectId;
};

/// The rows of a query.
template <class T>
using Vector = std::vector<T>;

/// Queries and look-ups over one database.
class IDataModelMgr : public IRefCounted
{
public:
    /// Appends the rows found, which must be resources. The panel has a single query, for all
    /// objects of a type: "select object where IS_OF_TYPE_VERSION( {<uid> } )", with
    /// UID_Resource(). False for a query that cannot be run; nothing is appended then. The panel
    /// ignores the result. CNodePalette asks while it paints, too.
    virtual bool RunQuery(char const* query, Vector<CQueryResult>& results) = 0;
    /// The object of a row of the query, or of the entry that was chosen in "Compound source"; an
    /// invalid handle when there is no such object. The panel takes it for a resource: an invalid
    /// one, or another object, aborts the menu or the move with an exception.
    virtual QormHandle<IDbObject> FindObject(DbObjectId const& objectId) = 0;
    /// Passed to IHelper::GetHelper; never null for an open database.
    virtual QormPtr<IQormInstance> GetInstance() = 0;
};

/// Operations on whole objects of an instance.
class IHelper : public IRefCounted
{
public:
    /// The helper of the instance; null when the instance is null. The panel dereferences it
    /// unchecked.
    static QormPtr<IHelper> GetHelper(QormPtr<IQormInstance> const& instance);

    /// Moves the object into the data source. Called for the chosen entry of "Compound source",
    /// with an object that is valid. The helper refuses a read-only or null target, with a message;
    /// null goes with a resource whose data source has gone meanwhile. `withFiles` moves the
    /// object's files as well; the panel passes true.
    virtual void MoveToDataSource(QormHandle<IDbObject> const& object,
                                  QormPtr<IDataSource> const& target, bool withFiles) = 0;
};

/// The data source that the resource represents, or null, which leaves the entry out of the menu;
/// null for an invalid handle.
QormPtr<IDataSource> GetDataSourceFromResource(QormHandle<IValueAsset> const& resource);
/// The resource's location with all variables expanded; the tool tip of its entry. Empty for an
/// object that is not a resource, and for an invalid handle.
std::string GetResourceExpandedURI(QormHandle<IDbObject> const& resource);
/// True when the resource represents the data source; false for a null data source and for an
/// invalid resource.
bool IsSameUri(QormPtr<IDataSource> const& source, QormHandle<IValueAsset> const& resource);

/// The service "RevisionControlUIHelper": database objects by identifier, and source-control
/// commands for them. Without it no item has a database object. The commands get valid objects.
class IRevisionControlUIHelper : public wek::IBase
{
public:
    /// An invalid handle when there is no such object; the identifier's text may be malformed.
    /// Called for each item of a rebuild, in menus, commands and tool tips, and once a process for
    /// the two components of the application.
    virtual QormHandle<IDbObject> FindObject(DbObjectId const& objectId) = 0;

    /// Sets `checkedOut`, which is false at first, on success; the panel passes true for `askUser`.
    /// The panel has no menu entry for it: a host invokes the slot OnCheckOutItem(), and
    /// OnMakeItemWritable() for MakeWritable.
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

    /// @{

    /// The failed expression and its place, in one line; valid as long as the exception.
    std::string const& GetErrorString() const;
    char const* what() const noexcept override;
    /// @}

protected:
    /// Keeps the line.
    explicit ExBase(std::string const& errorString);

private:
    std::string m_ErrorString;
};

/// Raised when a null database pointer or a handle to a removed object is dereferenced. The
/// error string goes to PrintDebugString first unless error reporting is disabled.
class ExBase::NullPtr : public ExBase
{
public:
    /// `what` is the expression that failed, `file` and `line` the place.
    NullPtr(char const* what, char const* file, int line);
};

/// While one exists, errors are raised without being printed. Guards may be nested.
class DisableErrorReportingGuard
{
public:
    /// Switches printing off.
    DisableErrorReportingGuard();
    /// Switches it on again, if this is the last guard.
    ~DisableErrorReportingGuard();

    /// There is a guard.
    static bool IsErrorReportingDisabled();

private:
    DisableErrorReportingGuard(DisableErrorReportingGuard const&);
    DisableErrorReportingGuard& operator=(DisableErrorReportingGuard const&);
};

/// Writes a line to the host's debug output.
void PrintDebugString(std::string const& text);

} // namespace qorm

#ifdef __GNUC__
#pragma GCC visibility pop
#endif

#endif
