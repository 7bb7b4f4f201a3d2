#pragma once

namespace ZQAPI {

class CZQDynamicDLL;

// What all entry points are, whatever they are called with. See CZQEntryPoint.
class CZQNamedEntryPoint {
public:
    // The name is not copied.
    CZQNamedEntryPoint(CZQDynamicDLL& library, const char* name);
    CZQNamedEntryPoint(const CZQNamedEntryPoint&) = delete;
    CZQNamedEntryPoint& operator=(const CZQNamedEntryPoint&) = delete;
    ~CZQNamedEntryPoint();

    const char* GetName() const noexcept { return m_name; }
    bool IsBound() const noexcept { return m_address != nullptr; }

protected:
    void* GetAddress() const noexcept { return m_address; }

private:
    friend class CZQDynamicDLL;  // binds it

    CZQDynamicDLL& m_library;
    const char* const m_name;
    void* m_address = nullptr;
};

// A function of a library that is loaded at run time. Made for the CZQDynamicDLL that loads it, as a rule as its
// member; opening the library binds all that were made for it, in the order in which they were made. Then it is
// called like the function it stands for; before, it must not be called.
//
//     CZQEntryPoint<std::int32_t(void* list)> m_getCameraList{*this, "is_GetCameraList"};
//     CZQEntryPoint<decltype(ZQCCM_SendCmd)> m_send{*this, "ZQCCM_SendCmd"};
template <class Function>
class CZQEntryPoint;

template <class Result, class... Arguments>
class CZQEntryPoint<Result(Arguments...)> : public CZQNamedEntryPoint {
public:
    using Pointer = Result (*)(Arguments...);

    using CZQNamedEntryPoint::CZQNamedEntryPoint;

    Pointer Get() const noexcept { return reinterpret_cast<Pointer>(GetAddress()); }
    Result operator()(Arguments... arguments) const { return Get()(arguments...); }
};

}  // namespace ZQAPI
