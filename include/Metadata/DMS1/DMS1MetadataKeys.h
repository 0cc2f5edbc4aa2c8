#pragma once
// Keys of the descriptive metadata sets of DMS-1, as local sets.
// Each returns a constant made once, on first use.

#include "KLV/Key.h"

namespace Vellum
{
namespace Metadata
{
namespace DMS1
{
namespace DMS1MetadataKeys
{
KLV::Key const & address();
KLV::Key const & annotation();
KLV::Key const & award();
KLV::Key const & branding();
KLV::Key const & captionsDescription();
KLV::Key const & classification();
KLV::Key const & clipFramework();
KLV::Key const & communications();
KLV::Key const & contactsList();
KLV::Key const & contract();
KLV::Key const & cueWords();
KLV::Key const & dMS1Identification();
KLV::Key const & deviceParameters();
KLV::Key const & event();
KLV::Key const & groupRelationship();
KLV::Key const & keyPoint();
KLV::Key const & location();
KLV::Key const & nameValue();
KLV::Key const & organisation();
KLV::Key const & participant();
KLV::Key const & person();
KLV::Key const & pictureFormat();
KLV::Key const & processing();
KLV::Key const & productionFramework();
KLV::Key const & project();
KLV::Key const & publication();
KLV::Key const & rights();
KLV::Key const & sceneFramework();
KLV::Key const & scripting();
KLV::Key const & settingPeriod();
KLV::Key const & shot();
KLV::Key const & titles();
} // namespace DMS1MetadataKeys
} // namespace DMS1
} // namespace Metadata
} // namespace Vellum
