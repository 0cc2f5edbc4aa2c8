#include "Types/Factories/BaseTypeFactory.h"

#include "Exceptions/Exceptions.h"
#include "Platform/Initializer.h"
#include "Templates/Containers.h"
#include "Types/IdentifierMakers.h"
#include "Types/ValueClasses.h"

namespace Vellum
{
namespace Types
{
namespace Factories
{
namespace
{
template <class T>
Templates::auto_ptr<SimpleDataType> makeSimple(KLV::Value & value)
{
    return Templates::auto_ptr<SimpleDataType>(new T(value));
}

// `size` is the identifier of the element type.
template <class T>
Templates::auto_ptr<BaseType> makeCollection(KLV::Value & value, unsigned int size)
{
    return Templates::auto_ptr<BaseType>(new T(value, static_cast<Identifiers::Identifier>(size)));
}

class BaseTypeFactoryImpl : public BaseTypeFactory
{
public:
    BaseTypeFactoryImpl()
    {
        registerVariableSizeMaker(Identifiers::Array, &makeCollection<Array>);
        registerVariableSizeMaker(Identifiers::Batch, &makeCollection<Batch>);

        registerFixedSizeMaker(Identifiers::Boolean, &makeSimple<Boolean>);
        registerFixedSizeMaker(Identifiers::DataStream, &makeSimple<DataStream>);
        registerFixedSizeMaker(Identifiers::Int16, &makeSimple<Int16>);
        registerFixedSizeMaker(Identifiers::Int32, &makeSimple<Int32>);
        registerFixedSizeMaker(Identifiers::Int64, &makeSimple<Int64>);
        registerFixedSizeMaker(Identifiers::Int8, &makeSimple<Int8>);
        registerFixedSizeMaker(Identifiers::ISO7bitCharString, &makeSimple<ISO7String>);
        registerFixedSizeMaker(Identifiers::Length, &makeSimple<Length>);
        registerFixedSizeMaker(Identifiers::Position, &makeSimple<Position>);
        registerFixedSizeMaker(Identifiers::ProductVersionType, &makeSimple<ProductVersion>);
        registerFixedSizeMaker(Identifiers::Rational, &makeSimple<Rational>);
        registerFixedSizeMaker(Identifiers::TimestampType, &makeSimple<Timestamp>);
        registerFixedSizeMaker(Identifiers::UInt16, &makeSimple<UInt16>);
        registerFixedSizeMaker(Identifiers::UInt32, &makeSimple<UInt32>);
        registerFixedSizeMaker(Identifiers::UInt64, &makeSimple<UInt64>);
        registerFixedSizeMaker(Identifiers::UInt8, &makeSimple<UInt8>);
        registerFixedSizeMaker(Identifiers::Unknown, &makeSimple<Unknown>);
        registerFixedSizeMaker(Identifiers::UTF16, &makeSimple<UTF16>);
        registerFixedSizeMaker(Identifiers::UTF16CharString, &makeSimple<UTF16String>);
        registerFixedSizeMaker(Identifiers::VersionType, &makeSimple<VersionType>);
        registerFixedSizeMaker(Identifiers::Orientation, &makeSimple<Orientation>);
        registerFixedSizeMaker(Identifiers::RGBALayout, &makeSimple<RGBALayout>);
        registerFixedSizeMaker(Identifiers::SignalStandard, &makeSimple<SignalStandard>);
        registerFixedSizeMaker(Identifiers::DataValue, &makeSimple<DataValue>);
        registerFixedSizeMaker(Identifiers::J2KPictureComponentType, &makeSimple<J2KPictureComponent>);
        registerFixedSizeMaker(Identifiers::J2KCodingStyleDefault, &makeSimple<J2KCodingStyleDefault>);
        registerFixedSizeMaker(Identifiers::J2KQuantisationDefault, &makeSimple<J2KQuantisationDefault>);

        registerIdentifierMakers(*this);
    }

    Templates::auto_ptr<BaseType> create(KLV::Value & value, Identifiers::Identifier type,
                                         unsigned int size) override
    {
        VariableSizeMakers::const_iterator found = variableSizeMakers_.find(type);
        if (found != variableSizeMakers_.end())
            return found->second(value, size);
        return create(value, type);
    }

    Templates::auto_ptr<SimpleDataType> create(KLV::Value & value, Identifiers::Identifier type) override
    {
        FixedSizeMakers::const_iterator found = fixedSizeMakers_.find(type);
        if (found == fixedSizeMakers_.end())
            VELLUM_THROW(NoFactory, "No Factory for type");
        return found->second(value);
    }

    void registerFixedSizeMaker(Identifiers::Identifier type, FixedSizeMaker maker) override
    {
        if (maker == nullptr)
            fixedSizeMakers_.erase(type);
        else
            fixedSizeMakers_[type] = maker;
    }

    bool hasFixedSizeMaker(Identifiers::Identifier type) const override
    {
        return fixedSizeMakers_.find(type) != fixedSizeMakers_.end();
    }

    void registerVariableSizeMaker(Identifiers::Identifier type, VariableSizeMaker maker) override
    {
        if (maker == nullptr)
            variableSizeMakers_.erase(type);
        else
            variableSizeMakers_[type] = maker;
    }

    bool hasVariableSizeMaker(Identifiers::Identifier type) const override
    {
        return variableSizeMakers_.find(type) != variableSizeMakers_.end();
    }

private:
    typedef Templates::map<Identifiers::Identifier, FixedSizeMaker> FixedSizeMakers;
    typedef Templates::map<Identifiers::Identifier, VariableSizeMaker> VariableSizeMakers;
    FixedSizeMakers fixedSizeMakers_;
    VariableSizeMakers variableSizeMakers_;
};
} // namespace

BaseTypeFactory::~BaseTypeFactory() {}

BaseTypeFactory & BaseTypeFactory::instance()
{
    return Singleton<BaseTypeFactoryImpl>::instance();
}
} // namespace Factories
} // namespace Types
} // namespace Vellum
