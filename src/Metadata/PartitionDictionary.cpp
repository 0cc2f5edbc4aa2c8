#include "Metadata/PartitionDictionary.h"

#include "Exceptions/Exceptions.h"
#include "MetaMetadata/Dictionary.h"
#include "Packs/PrimerPack.h"
#include "Types/LocalTag.h"
#include "Types/UniversalLabel.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace Metadata
{
namespace
{
// The bounds of the tag ranges, compared in the tags' own order.
Types::LocalTag const & nullTag()
{
    static unsigned char const bytes[2] = {0x00, 0x00};
    static Types::LocalTag const tag(bytes);
    return tag;
}

Types::LocalTag const & firstStaticTag()
{
    static unsigned char const bytes[2] = {0x01, 0x00};
    static Types::LocalTag const tag(bytes);
    return tag;
}

Types::LocalTag const & firstDynamicTag()
{
    static unsigned char const bytes[2] = {0x80, 0x00};
    static Types::LocalTag const tag(bytes);
    return tag;
}

bool isStatic(Types::LocalTag const & tag)
{
    return !(tag < firstStaticTag()) && tag < firstDynamicTag();
}
} // namespace

struct PartitionDictionary::Impl
{
    VELLUM_CLASS_ALLOCATION
    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary;
    Templates::auto_ptr<Packs::PrimerPack> primer;
    // The next dynamic tag to try, high byte first; wraps to 00.00 once FF.FF is given out.
    unsigned char nextTag[2];

    Impl(Templates::SharedPtr<MetaMetadata::Dictionary> const & schema, Templates::auto_ptr<Packs::PrimerPack> pack)
        : dictionary(schema), primer(std::move(pack))
    {
        nextTag[0] = 0x80;
        nextTag[1] = 0x00;
        if (primer.get() == nullptr)
            primer.reset(new Packs::PrimerPack());
    }

    Types::UniversalLabel const * fromDictionary(Types::LocalTag const & tag) const
    {
        Types::UniversalLabel const * label = dictionary->find(tag);
        if (label == nullptr)
            VELLUM_THROW(LocalTagNotFound, Utils::wide("Dictionary does not contain static Local Tag ") + tag.toString());
        return label;
    }
};

PartitionDictionary::PartitionDictionary(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary,
                                         Templates::auto_ptr<Packs::PrimerPack> primer)
    : impl_(new Impl(dictionary, std::move(primer)))
{
}

PartitionDictionary::~PartitionDictionary() = default;

Templates::SharedPtr<MetaMetadata::Dictionary> PartitionDictionary::dictionary() const
{
    return impl_->dictionary;
}

Packs::PrimerPack & PartitionDictionary::primer() const
{
    return *impl_->primer;
}

Types::LocalTag const & PartitionDictionary::find(Types::UniversalLabel const & label) const
{
    Types::LocalTag const * tag = impl_->primer->find(label);
    if (tag == nullptr)
        VELLUM_THROW(LocalTagNotFound, "No LocalTag defined for this UniversalLabel");
    return *tag;
}

Types::UniversalLabel const & PartitionDictionary::find(Types::LocalTag const & tag, bool strictPrimer) const
{
    if (tag == nullTag())
        VELLUM_THROW(InvalidLocalTag, "Invalid Local Tag '00.00'");

    Types::UniversalLabel const * fromPrimer = impl_->primer->find(tag);
    if (strictPrimer)
    {
        if (fromPrimer == nullptr)
            VELLUM_THROW(NotFoundInPrimer, Utils::wide("Could not resolve local tag ") + tag.toString() +
                                               Utils::wide(" to Universal Label using primer."));
        if (isStatic(tag))
        {
            // The file's Primer is believed only where it agrees with the standard.
            Types::UniversalLabel const * fromDictionary = impl_->fromDictionary(tag);
            if (!(*fromPrimer == *fromDictionary))
                VELLUM_THROW(UniversalLabelCollision, "Primer redefines a static assigned tag!");
        }
        return *fromPrimer;
    }

    if (fromPrimer != nullptr)
        return *fromPrimer;
    if (tag < firstDynamicTag())
        return *impl_->fromDictionary(tag);
    VELLUM_THROW(NotFoundInPrimer, Utils::wide("Could not resolve local tag ") + tag.toString() +
                                       Utils::wide(" to Universal Label using either primer and the dictionary."));
}

Types::LocalTag const & PartitionDictionary::findOrGenerate(Types::UniversalLabel const & label)
{
    Packs::PrimerPack & primer = *impl_->primer;
    if (Types::LocalTag const * tag = primer.find(label))
        return *tag;

    if (Types::LocalTag const * tag = impl_->dictionary->find(label))
    {
        primer.add(*tag, label);
        return *tag;
    }

    unsigned char * next = impl_->nextTag;
    while (next[0] != 0 || next[1] != 0)
    {
        Types::LocalTag const candidate(next);
        if (++next[1] == 0)
            ++next[0];
        if (primer.find(candidate) == nullptr && impl_->dictionary->find(candidate) == nullptr)
        {
            primer.add(candidate, label);
            Types::LocalTag const * stored = primer.find(label);
            if (stored != nullptr)
                return *stored;
        }
    }
    VELLUM_THROW(InvalidLocalTag, "All LocalTags are used");
}
} // namespace Metadata
} // namespace Vellum
