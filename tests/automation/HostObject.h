// An object of the host, as arguments may be. It lives on the stack and counts its references.
#pragma once

#include <oaidl.h>

namespace orif::test {

struct HostObject : IDispatch {
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) final {
    const bool known = wanted == IID_IUnknown || wanted == IID_IDispatch;
    *object = known ? this : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() final { return ++references; }
  ULONG STDMETHODCALLTYPE Release() final { return --references; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) final { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) final { return E_NOTIMPL; }

  ULONG references = 1;
};

}  // namespace orif::test
