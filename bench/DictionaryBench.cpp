// Building the built-in dictionary from its tables, and the look-ups a reader makes of it.

#include <benchmark/benchmark.h>

#include "MetaMetadata/StandardDictionary.h"
#include "Metadata/Structural/StructuralMetadataKeys.h"
#include "Metadata/Structural/StructuralMetadataULs.h"

using namespace Vellum;

static void BM_CreateStandardDictionary(benchmark::State & state)
{
    for (auto _ : state)
    {
        Templates::SharedPtr<MetaMetadata::Dictionary> dictionary = MetaMetadata::createStandardDictionary();
        benchmark::DoNotOptimize(dictionary.get());
    }
}
BENCHMARK(BM_CreateStandardDictionary)->Unit(benchmark::kMillisecond);

// A static tag, its element, and the attribute in a set: what resolving one item of a set costs.
static void BM_ResolveOneItem(benchmark::State & state)
{
    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary = MetaMetadata::createStandardDictionary();
    Types::LocalTag const tag(0x3b02);
    MetaMetadata::MetaMetadataSet const * preface =
        dictionary->find(Metadata::Structural::StructuralMetadataKeys::preface());
    for (auto _ : state)
    {
        Types::UniversalLabel const * label = dictionary->find(tag);
        benchmark::DoNotOptimize(dictionary->findMetaElement(*label));
        benchmark::DoNotOptimize(preface->findMetaAttribute(*label).get());
    }
}
BENCHMARK(BM_ResolveOneItem);
