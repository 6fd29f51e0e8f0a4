#include "orif/lowerlayer/AutomationObject.h"

#include <windows.h>

#include <oleauto.h>

#include <cstring>
#include <exception>
#include <limits>
#include <string>
#include <vector>

#include "orif/platform/WindowsText.h"

namespace orif {
namespace {

constexpr std::int32_t AnyExtent = std::numeric_limits<std::int32_t>::max();

// The arguments of one call in order, texts converted to narrow characters.
class GivenArguments {
 public:
  explicit GivenArguments(const DISPPARAMS& parameters)
      : values_(parameters.cArgs), texts_(parameters.cArgs) {
    for (std::size_t i = 0; i < values_.size(); ++i) {
      values_[i] = Convert(parameters.rgvarg[values_.size() - 1 - i], texts_[i]);
    }
  }

  std::span<const OrvexValue> Values() const { return values_; }

 private:
  // Kinds are automation codes, and both unions hold numbers and pointers alike.
  static OrvexValue Convert(const VARIANT& variant, std::string& text) {
    OrvexValue value{};
    value.kind = variant.vt;
    switch (variant.vt) {
      case VT_BSTR:
      case VT_BSTR | VT_BYREF:
        text = platform::Narrow(variant.vt == VT_BSTR ? variant.bstrVal : *variant.pbstrVal);
        value.count = static_cast<std::int32_t>(text.size());
        value.as.text = text.data();
        return value;
      default:
        value.count = AnyExtent;
        std::memcpy(&value.as, &variant.llVal, sizeof value.as);
        return value;
    }
  }

  std::vector<OrvexValue> values_;
  std::vector<std::string> texts_;
};

void Store(const OrvexValue& value, VARIANT& result) {
  VARIANT variant{};
  variant.vt = value.kind;
  if (value.kind == ORVEX_TEXT) {
    variant.bstrVal =
        platform::Wide({value.as.text, static_cast<std::size_t>(value.count)}).release();
  } else {
    std::memcpy(&variant.llVal, &value.as, sizeof value.as);
  }
  result = variant;
}

// Runs `action`; what it throws becomes the exception of the call.
template <class Action>
HRESULT ToldInFull(EXCEPINFO* told, const Action& action) noexcept {
  try {
    try {
      action();
      return S_OK;
    } catch (const std::exception& error) {
      if (told == nullptr) return DISP_E_EXCEPTION;
      *told = EXCEPINFO{};
      told->scode = E_FAIL;
      told->bstrDescription = platform::Wide(error.what()).release();
    }
    return DISP_E_EXCEPTION;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

class AutomationObject final : public IDispatch {
 public:
  explicit AutomationObject(std::shared_ptr<Dispatch> core) : core_(std::move(core)) {}
  AutomationObject(const AutomationObject&) = delete;
  AutomationObject& operator=(const AutomationObject&) = delete;
  virtual ~AutomationObject() = default;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) override {
    if (object == nullptr) return E_POINTER;
    const bool known = wanted == IID_IUnknown || wanted == IID_IDispatch;
    *object = known ? this : nullptr;
    if (!known) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override {
    for (UINT i = 0; i < count; ++i) ids[i] = DISPID_UNKNOWN;  // parameters have no names
    const HRESULT found = ToldInFull(nullptr, [&] {
      const auto length = static_cast<UINT>(std::wcslen(names[0]));
      ids[0] = core_->Lookup(platform::Narrow(names[0], length));
    });
    return SUCCEEDED(found) && count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
  }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) override {
    return ToldInFull(exception, [&] {
      const GivenArguments arguments(*parameters);
      const OrvexValue value = Carry(id, flags, arguments.Values());
      if (result != nullptr) Store(value, *result);
    });
  }

 private:
  // Scripts ask for methods and properties alike. A call without arguments is tried as a property
  // first: a method refuses that without doing anything.
  OrvexValue Carry(DISPID id, WORD flags, std::span<const OrvexValue> arguments) {
    const bool either = flags == (DISPATCH_METHOD | DISPATCH_PROPERTYGET);
    if (either && arguments.empty()) {
      try {
        return core_->Invoke(id, ORVEX_GET, arguments);
      } catch (const std::exception&) {
        return core_->Invoke(id, ORVEX_METHOD, arguments);
      }
    }
    return core_->Invoke(id, either ? ORVEX_METHOD : static_cast<OrvexCall>(flags), arguments);
  }

  std::shared_ptr<Dispatch> core_;
  ULONG references_ = 1;  // one apartment, one thread
};

}  // namespace

IDispatch* MakeAutomationObject(std::shared_ptr<Dispatch> core) {
  return new AutomationObject(std::move(core));
}

}  // namespace orif
