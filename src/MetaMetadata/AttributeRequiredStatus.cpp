#include "MetaMetadata/AttributeRequiredStatus.h"

#include "Exceptions/Exceptions.h"
#include "Platform/Initializer.h"
#include "Templates/Containers.h"
#include "Utils/Text.h"

namespace Vellum
{
namespace MetaMetadata
{
namespace
{
class AttributeRequiredStatus_impl : public AttributeRequiredStatus, public Singleton<AttributeRequiredStatus_impl>
{
public:
    using Singleton<AttributeRequiredStatus_impl>::instance;

    AttributeRequiredStatus_impl()
    {
        static struct
        {
            Status status;
            char const * name;
        } const rows[] = {{Required, "Req"},
                          {EncoderRequired, "E/req"},
                          {DecoderRequired, "D/req"},
                          {BestEffort, "B.Effort"},
                          {Optional, "Opt"}};
        for (auto const & row : rows)
        {
            Templates::wstring name = Utils::wide(row.name);
            nameToStatus_.insert(NameToStatus::value_type(name, row.status));
            statusToName_.insert(StatusToName::value_type(row.status, name));
        }
    }

    Status statusFromName(unsigned short const * name) const override
    {
        NameToStatus::const_iterator found = nameToStatus_.find(Templates::wstring(name));
        if (found == nameToStatus_.end())
            VELLUM_THROW(NotFound, Utils::wide("StatusNotFound: ") + name);
        return found->second;
    }

    unsigned short const * statusToName(Status status) const override
    {
        StatusToName::const_iterator found = statusToName_.find(status);
        if (found == statusToName_.end())
            VELLUM_THROW(NotFound, Utils::wide("StatusNotFound: ") + Utils::decimal(int(status)));
        return found->second.c_str();
    }

private:
    typedef Templates::map<Templates::wstring, Status> NameToStatus;
    typedef Templates::map<Status, Templates::wstring> StatusToName;
    NameToStatus nameToStatus_;
    StatusToName statusToName_;
};
} // namespace

AttributeRequiredStatus & AttributeRequiredStatus::instance() { return AttributeRequiredStatus_impl::instance(); }

AttributeRequiredStatus::~AttributeRequiredStatus() {}
} // namespace MetaMetadata
} // namespace Vellum
