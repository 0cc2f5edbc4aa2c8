#include "Platform/Initializer.h"

#include <vector>

#include "Platform/Platform.h"

namespace Vellum
{
namespace
{
struct Registry
{
    std::vector<void (*)()> functions;
    Platform::Synchronization::Mutex singletonMutex;
};

Initializer * initializer_ = nullptr;
Registry * registry_ = nullptr;

Platform::Synchronization::Mutex & instanceMutex()
{
    static Platform::Synchronization::Mutex * m = new Platform::Synchronization::Mutex;
    return *m;
}
} // namespace

Initializer::Initializer() {}

Initializer::~Initializer() {}

Initializer & Initializer::instance()
{
    Initializer * existing = __atomic_load_n(&initializer_, __ATOMIC_ACQUIRE);
    if (existing != nullptr)
        return *existing;
    Platform::Synchronization::ScopedLock lock(instanceMutex());
    if (initializer_ == nullptr)
    {
        Initializer * created = new Initializer;
        registry_ = new Registry;
        Platform::srand();
        __atomic_store_n(&initializer_, created, __ATOMIC_RELEASE);
    }
    return *initializer_;
}

void Initializer::shutdown()
{
    Platform::Synchronization::ScopedLock lock(instanceMutex());
    if (initializer_ == nullptr)
        return;
    // The registered functions are dropped unrun: singletons live to the end of the process.
    delete registry_;
    registry_ = nullptr;
    Initializer * old = initializer_;
    __atomic_store_n(&initializer_, static_cast<Initializer *>(nullptr), __ATOMIC_RELEASE);
    delete old;
}

void Initializer::registerSingleton(void (*destroy)())
{
    registry_->functions.push_back(destroy);
}

Platform::Synchronization::Mutex & Initializer::singletonMutex()
{
    return registry_->singletonMutex;
}

uint64 Initializer::registeredCount() const
{
    return registry_->functions.size();
}
} // namespace Vellum
