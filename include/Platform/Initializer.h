#pragma once
// The singleton registry: every singleton of the library is created under singletonMutex() and
// registers its destruction function here.

#include "Platform/Synchronization.h"

namespace Vellum
{
class Initializer
{
public:
    static Initializer & instance();
    // Marks the end of use: drops the registry (the registered functions are not run) so that a
    // later instance() starts afresh. A second call does nothing.
    static void shutdown();

    void registerSingleton(void (*destroy)());
    Platform::Synchronization::Mutex & singletonMutex();
    // How many destruction functions are registered.
    uint64 registeredCount() const;

private:
    Initializer();
    ~Initializer();
    Initializer(Initializer const &) = delete;
    Initializer & operator=(Initializer const &) = delete;
};

// The double-checked creation that every singleton of the library follows.
template <class T>
class Singleton
{
public:
    static T & instance()
    {
        T * object = __atomic_load_n(&object_, __ATOMIC_ACQUIRE);
        if (object != nullptr)
            return *object;
        Platform::Synchronization::ScopedLock lock(Initializer::instance().singletonMutex());
        if (object_ == nullptr)
        {
            T * created = new T;
            __atomic_store_n(&object_, created, __ATOMIC_RELEASE);
            Initializer::instance().registerSingleton(&Singleton::destroy);
        }
        return *object_;
    }

private:
    static void destroy()
    {
        delete object_;
        object_ = nullptr;
    }
    static T * object_;
};

template <class T>
T * Singleton<T>::object_ = nullptr;
} // namespace Vellum
