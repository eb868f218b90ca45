#pragma once

#include <cstdint>

namespace Platform
{

/** Atomic operations on a 4-byte aligned int32 that other processes share (a field of a
    shared mapping). Lock-free: no process can die holding anything. */
struct SharedInt32
{
    static std::int32_t load(const volatile std::int32_t* field) { return __atomic_load_n(field, __ATOMIC_ACQUIRE); }

    static void store(volatile std::int32_t* field, std::int32_t value)
    {
        __atomic_store_n(field, value, __ATOMIC_RELEASE);
    }

    /** Replaces expected by desired; on failure, expected receives the current value. */
    static bool compareExchange(volatile std::int32_t* field, std::int32_t& expected, std::int32_t desired)
    {
        return __atomic_compare_exchange_n(field, &expected, desired, false, __ATOMIC_ACQ_REL, __ATOMIC_ACQUIRE);
    }

    static std::int32_t fetchAdd(volatile std::int32_t* field, std::int32_t delta)
    {
        return __atomic_fetch_add(field, delta, __ATOMIC_ACQ_REL);
    }
};

} // namespace Platform
