#include "testhost.h"
#include "testtext.h"

#include <cctype>

using namespace qorm;

namespace {

/// The helper of the one instance.
class TestHelper : public Counted<IHelper>
{
public:
    void MoveToDataSource(QormHandle<IDbObject> const& object, QormPtr<IDataSource> const& target,
                          bool withFiles) override
    {
        TestDataSource* const source = static_cast<TestDataSource*>(target.Get());
        TestHost::Get().Record(
            "MoveToDataSource",
            {TextOf(object), source ? Quoted(source->m_Uri) : "null", TextOf(withFiles)});
    }
};

/// What following a null pointer does.
[[noreturn]] void RaiseNullPtr()
{
    ExBase::NullPtr const error("GetPointeeNotNull", __FILE__, 102);
    if (!DisableErrorReportingGuard::IsErrorReportingDisabled())
        PrintDebugString(error.GetErrorString());
    throw error;
}

int disabledReports = 0;

// The form of the object that a handle sees; null when it has no such form.
void View(TestObject* object, IDbObject*& view)
{
    view = object;
}

void View(TestObject* object, ITypeAsset*& view)
{
    view = object && object->m_IsTypeAsset ? object : nullptr;
}

void View(TestObject* object, IValueAsset*& view)
{
    view = object && object->m_IsResource ? object : nullptr;
}

template <class T>
TestObject* Object(QormHandle<T> const& handle)
{
    return handle.IsValid() ? TestDatabase::Get().At(handle.GetCacheIndex()) : nullptr;
}

} // namespace

namespace qorm {

UID::UID(char const* text)
    : m_Text(text)
{}

char const* UID::GetStr() const
{
    return m_Text.c_str();
}

bool UID::operator==(UID const& other) const
{
    return m_Text == other.m_Text;
}

UID const& UID_Null()
{
    static UID const uid("00000000-0000-0000-0000-000000000000");
    return uid;
}

UID const& UID_Resource()
{
    static UID const uid("5E50CE00-0000-4000-8000-000000000001");
    return uid;
}

DbObjectId::DbObjectId(char const* text)
    : m_Text(text)
{}

char const* DbObjectId::GetStr() const
{
    return m_Text.c_str();
}

bool DbObjectId::operator==(DbObjectId const& other) const
{
    return m_Text == other.m_Text;
}

bool DbObjectId::IsUID(char const* text)
{
    std::string const pattern = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
    std::string const candidate = text ? text : "";
    if (candidate.size() != pattern.size())
        return false;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        bool const fits = pattern[i] == 'x'
                              ? std::isxdigit(static_cast<unsigned char>(candidate[i]))
                              : candidate[i] == '-';
        if (!fits)
            return false;
    }
    return true;
}

IRefCounted::~IRefCounted() {}

template <class T>
QormPtr<T>::QormPtr()
    : m_Object(nullptr)
{}

template <class T>
QormPtr<T>::QormPtr(T* object)
    : m_Object(object)
{
    if (m_Object)
        m_Object->AddRef();
}

template <class T>
QormPtr<T>::QormPtr(QormPtr const& other)
    : QormPtr(other.m_Object)
{}

template <class T>
QormPtr<T>& QormPtr<T>::operator=(QormPtr const& other)
{
    QormPtr copy(other);
    std::swap(m_Object, copy.m_Object);
    return *this;
}

template <class T>
QormPtr<T>::~QormPtr()
{
    if (m_Object)
        m_Object->Release();
}

template <class T>
bool QormPtr<T>::IsNull() const
{
    return !m_Object;
}

template <class T>
T* QormPtr<T>::Get() const
{
    return m_Object;
}

template <class T>
T* QormPtr<T>::operator->() const
{
    if (!m_Object)
        RaiseNullPtr();
    return m_Object;
}

template <class T>
bool QormPtr<T>::operator==(QormPtr const& other) const
{
    return m_Object == other.m_Object;
}

template <class T>
QormHandle<T>::QormHandle()
    : m_CacheIndex(-1)
{}

template <class T>
QormHandle<T>::QormHandle(QormPtr<IQormInstance> const& instance, int cacheIndex)
    : m_Instance(instance)
    , m_CacheIndex(cacheIndex)
{}

template <class T>
QormHandle<T>::QormHandle(QormHandle const& other) = default;

template <class T>
QormHandle<T>& QormHandle<T>::operator=(QormHandle const& other) = default;

template <class T>
QormHandle<T>::~QormHandle() = default;

template <class T>
bool QormHandle<T>::IsValid() const
{
    T* view = nullptr;
    View(TestDatabase::Get().At(m_CacheIndex), view);
    return view;
}

template <class T>
T* QormHandle<T>::operator->() const
{
    T* view = nullptr;
    View(TestDatabase::Get().At(m_CacheIndex), view);
    if (!view)
        RaiseNullPtr();
    return view;
}

template <class T>
template <class U>
QormHandle<T>& QormHandle<T>::AssignCast(QormHandle<U> const& other)
{
    TestHost::Get().Count("AssignCast");
    *this = QormHandle(other.GetInstance(), other.GetCacheIndex());
    if (!IsValid())
        *this = QormHandle();
    return *this;
}

template <class T>
QormPtr<IDataSource> QormHandle<T>::GetDataSource() const
{
    TestHost::Get().Count("GetDataSource");
    TestObject* const object = Object(*this);
    return QormPtr<IDataSource>(object ? object->m_Source : nullptr);
}

template <class T>
DbObjectId QormHandle<T>::GetDbObjectId() const
{
    TestObject* const object = Object(*this);
    return object ? object->GetDbObjectId() : DbObjectId("");
}

template <class T>
QormPtr<IDataModelMgr> QormHandle<T>::GetManager() const
{
    TestHost::Get().Count("GetManager");
    TestObject* const object = Object(*this);
    return object ? object->GetDataModelMgr() : QormPtr<IDataModelMgr>();
}

template <class T>
QormPtr<IQormInstance> QormHandle<T>::GetInstance() const
{
    return IsValid() ? m_Instance : QormPtr<IQormInstance>();
}

template <class T>
int QormHandle<T>::GetCacheIndex() const
{
    return IsValid() ? m_CacheIndex : -1;
}

template <class T>
bool QormHandle<T>::IsLoaded() const
{
    TestObject const* const object = Object(*this);
    return object && object->IsLoaded();
}

template class QormPtr<IDataSource>;
template class QormPtr<IValueAsset>;
template class QormPtr<IDbObject>;
template class QormPtr<IDataModelMgr>;
template class QormPtr<IHelper>;
template class QormPtr<IQormInstance>;
template class QormPtr<ITypeAsset>;

// A handle of each kind, taken over from every kind.
#define INSTANTIATE_HANDLE(Kind)                                                                   \
    template class QormHandle<Kind>;                                                               \
    template QormHandle<Kind>& QormHandle<Kind>::AssignCast(QormHandle<IDbObject> const&);         \
    template QormHandle<Kind>& QormHandle<Kind>::AssignCast(QormHandle<ITypeAsset> const&);        \
    template QormHandle<Kind>& QormHandle<Kind>::AssignCast(QormHandle<IValueAsset> const&);

INSTANTIATE_HANDLE(IDbObject)
INSTANTIATE_HANDLE(ITypeAsset)
INSTANTIATE_HANDLE(IValueAsset)

CQueryResult::CQueryResult(DbObjectId const& objectId)
    : m_ObjectId(objectId)
{}

DbObjectId CQueryResult::GetObjectId() const
{
    return m_ObjectId;
}

QormPtr<IHelper> IHelper::GetHelper(QormPtr<IQormInstance> const& instance)
{
    TestHost::Get().Count("GetHelper");
    static TestHelper* const helper = new TestHelper;
    return instance.IsNull() ? QormPtr<IHelper>() : QormPtr<IHelper>(helper);
}

QormPtr<IDataSource> GetDataSourceFromResource(QormHandle<IValueAsset> const& resource)
{
    TestHost::Get().Count("GetDataSourceFromResource");
    TestObject* const object = Object(resource);
    return QormPtr<IDataSource>(object ? object->m_Represents : nullptr);
}

std::string GetResourceExpandedURI(QormHandle<IDbObject> const& resource)
{
    TestHost::Get().Count("GetResourceExpandedURI");
    TestObject* const object = Object(resource);
    return object && object->m_Represents ? object->m_Represents->m_Uri : std::string();
}

bool IsSameUri(QormPtr<IDataSource> const& source, QormHandle<IValueAsset> const& resource)
{
    return !source.IsNull() && source == GetDataSourceFromResource(resource);
}

ExBase::ExBase(std::string const& errorString)
    : m_ErrorString(errorString)
{}

ExBase::~ExBase() noexcept {}

std::string const& ExBase::GetErrorString() const
{
    return m_ErrorString;
}

char const* ExBase::what() const noexcept
{
    return m_ErrorString.c_str();
}

ExBase::NullPtr::NullPtr(char const* what, char const* /*file*/, int line)
    : ExBase(std::string("null pointer: ") + what + ":" + std::to_string(line))
{}

DisableErrorReportingGuard::DisableErrorReportingGuard()
{
    ++disabledReports;
}

DisableErrorReportingGuard::~DisableErrorReportingGuard()
{
    --disabledReports;
}

bool DisableErrorReportingGuard::IsErrorReportingDisabled()
{
    return disabledReports > 0;
}

void PrintDebugString(std::string const& text)
{
    TestHost::Get().Record("PrintDebugString", {Quoted(text)});
}

} // namespace qorm
