#ifndef NODEBROWSER_TESTS_TESTDATABASE_H
#define NODEBROWSER_TESTS_TESTDATABASE_H

// The object database of the test host.

#include "testcalls.h"
#include <hostkit/refcounted.h>

#include <string>
#include <vector>

class TestDataSource : public hostkit::CRefCounted<qorm::IDataSource>
{
public:
    TestDataSource(std::string const& uri, int accessMode)
        : m_Uri(uri)
        , m_AccessMode(accessMode)
    {}

    int GetAccessMode() const override
    {
        Query("GetAccessMode", {Quoted(m_Uri)});
        return m_AccessMode;
    }

    std::string m_Uri;
    int m_AccessMode;
};

/// A database object in all the forms that the contract knows.
class TestObject : public hostkit::CRefCounted<qorm::IDbObject, qorm::ITypeAsset, qorm::IValueAsset>
{
public:
    qorm::QormPtr<qorm::IDataModelMgr> GetDataModelMgr() const override;
    qorm::QormHandle<qorm::IValueAsset> GetAssetHandle() const override;

    bool IsReadOnly() const override
    {
        Query("IsReadOnly", {QString::fromStdString(m_Uid)});
        return m_IsReadOnly;
    }

    char const* GetName() const override
    {
        return m_ResourceName.c_str();
    }

    qorm::DbObjectId GetDbObjectId() const override
    {
        return qorm::DbObjectId(m_Uid.c_str());
    }

    std::string m_Uid;
    int m_CacheIndex;
    /// Where it lives; may be null.
    TestDataSource* m_Source;

    bool m_IsTypeAsset = false;
    bool m_IsLoaded = true;
    bool m_IsReadOnly = false;

    /// Empty when it is no resource.
    std::string m_ResourceName;
    /// What the resource stands for; may be null.
    TestDataSource* m_Represents = nullptr;
};

/// One database with its objects. It lives as long as the process, because the panel keeps the
/// two components that long.
class TestDatabase : public hostkit::CRefCounted<qorm::IQormInstance>
{
public:
    static TestDatabase& Get()
    {
        static TestDatabase* const database = new TestDatabase;
        return *database;
    }

    /// Forgets everything but the components.
    void Clear()
    {
        for (std::size_t index = 2; index < m_Cache.size(); ++index)
            m_Cache[index]->Release();
        m_Cache.resize(2);
        for (std::size_t index = 2; index < m_Sources.size(); ++index)
            m_Sources[index]->Release();
        m_Sources.resize(2);
        for (TestDataSource* source : m_ComponentSources)
            source->m_AccessMode = 0;
    }

    TestDataSource* AddSource(std::string const& uri, int accessMode = 0)
    {
        m_Sources.push_back(new TestDataSource(uri, accessMode));
        m_Sources.back()->AddRef();
        return m_Sources.back();
    }

    TestObject& AddObject(std::string const& uid, TestDataSource* source)
    {
        TestObject* const object = new TestObject;
        object->AddRef();
        object->m_Uid = uid;
        object->m_CacheIndex = static_cast<int>(m_Cache.size());
        object->m_Source = source;
        m_Cache.push_back(object);
        return *object;
    }

    /// An object that stands for the data source.
    TestObject& AddResource(std::string const& uid, std::string const& name,
                            TestDataSource* represents)
    {
        TestObject& resource = AddObject(uid, nullptr);
        resource.m_ResourceName = name;
        resource.m_Represents = represents;
        return resource;
    }

    /// Invalid when there is none.
    qorm::QormHandle<qorm::IDbObject> Find(qorm::DbObjectId const& objectId) const
    {
        for (TestObject const* object : m_Cache) {
            if (object->m_Uid == objectId.GetStr())
                return qorm::QormHandle<qorm::IDbObject>(qorm::QormPtr<qorm::IQormInstance>(&Get()),
                                                         object->m_CacheIndex);
        }
        return qorm::QormHandle<qorm::IDbObject>();
    }

    /// By their cache indexes.
    std::vector<TestObject*> m_Cache;
    /// Where the application's two components live.
    TestDataSource* m_ComponentSources[2];

private:
    TestDatabase();

    std::vector<TestDataSource*> m_Sources;
};

#endif
