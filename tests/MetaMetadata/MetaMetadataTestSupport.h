#pragma once
// Helpers of the schema tests: labels and keys from their dotted text, and small descriptions.

#include "KLV/KLVTestSupport.h"
#include "Support/ThrownCompare.h"
#include "KLV/Key.h"
#include "MetaMetadata/MetaAttribute.h"
#include "MetaMetadata/MetaSimpleElement.h"
#include "Templates/SharedPtr.h"
#include "Types/LocalTag.h"
#include "Types/UniversalLabel.h"

namespace Vellum
{
namespace MetaMetadataTest
{
using KLVTest::n;
using KLVTest::Thrown;
using KLVTest::thrown;
using KLVTest::thrownBy;
using KLVTest::w;

inline Types::UniversalLabel ul(char const * dotted)
{
    return Types::UniversalLabel(Utils::wide(dotted).c_str(), Types::Dotted);
}

inline KLV::Key key(char const * dotted)
{
    return KLV::Key(Utils::wide(dotted).c_str(), Types::Dotted);
}

// A label that differs from the others in its last byte.
inline Types::UniversalLabel label(unsigned char last)
{
    unsigned char bytes[16] = {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x01,
                               0x0e, 0x7f, 0x00, 0x00, 0x00, 0x00, 0x00, last};
    return Types::UniversalLabel(bytes);
}

// A key of a local set that differs from the others in its last byte.
inline KLV::Key setKey(unsigned char last)
{
    unsigned char bytes[16] = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01,
                               0x0e, 0x7f, 0x01, 0x00, 0x00, 0x00, 0x00, last};
    return KLV::Key(bytes);
}

inline Templates::SharedPtr<MetaMetadata::MetaAttribute> attribute(
    MetaMetadata::MetaElement const & element,
    MetaMetadata::AttributeRequiredStatus::Status status = MetaMetadata::AttributeRequiredStatus::Optional,
    Types::LocalTag const * tag = nullptr)
{
    return Templates::SharedPtr<MetaMetadata::MetaAttribute>(
        new MetaMetadata::MetaAttribute(element, status, Templates::auto_ptr<Types::BaseType const>(), tag));
}

// The text of a 16-bit property value.
inline std::string property(MetaMetadata::PropertyMap const & object, char const * name)
{
    return n(object.getProperty(w(name).c_str()));
}
} // namespace MetaMetadataTest
} // namespace Vellum
