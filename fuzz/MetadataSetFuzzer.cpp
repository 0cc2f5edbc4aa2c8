// Loads one KLV packet of the input as a metadata set with the built-in dictionary and an empty
// Primer (static tags only), asks the set's validation queries, and writes it again.
#include "FuzzSupport.h"

#include "KLV/Reader.h"
#include "MetaMetadata/StandardDictionary.h"
#include "Metadata/Element.h"
#include "Metadata/MetadataSet.h"
#include "Metadata/PartitionDictionary.h"
#include "Metadata/PartitionMetadata.h"
#include "Packs/PrimerPack.h"

using namespace Vellum;

extern "C" int LLVMFuzzerTestOneInput(uint8_t const * data, size_t size)
{
    static Templates::SharedPtr<MetaMetadata::Dictionary> dictionary = MetaMetadata::createStandardDictionary();
    DataIO::Memory::MemoryDataSource source(data, size);
    KLV::Reader reader(source);
    Templates::auto_ptr<Metadata::PartitionDictionary> partitionDictionary(
        new Metadata::PartitionDictionary(dictionary, Templates::auto_ptr<Packs::PrimerPack>(new Packs::PrimerPack())));
    Metadata::PartitionMetadata metadata(std::move(partitionDictionary));
    VellumFuzz::guarded([&] {
        uint64 skipped = 0;
        Templates::auto_ptr<KLV::Packet> packet = reader.nextKLV(skipped, 0);
        Metadata::MetadataSet * set = metadata.load(*packet);
        if (set == nullptr)
            return;
        Templates::vector<Metadata::Element *> elements;
        set->openElements(elements);
        set->incompleteElements(elements);
        set->possiblyOpenElements(elements);
        set->possiblyIncompleteElements(elements);
        set->possiblyForbiddenElements(elements);
        set->getSemanticsValidationElements(elements);
        set->instanceUID();
        DataIO::Memory::MemoryDataSink sink;
        set->serialize(sink, metadata.partitionDictionary(), true);
        Metadata::MetadataSet * copy = set->clone(true, &metadata);
        (void)copy;
    });
    return 0;
}
