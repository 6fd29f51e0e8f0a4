// The lower core object as Python has it: operations are invoked by number.
#include <cstring>
#include <exception>
#include <memory>

#include "orif/lowerlayer/Dispatch.h"
#include "python/native/Model.h"

namespace orif::python {

/// The arguments of an operation. Numbers and texts are passed by value, arrays by reference.
struct LowerArguments {
  std::vector<OrvexValue> values;
};

template <>
struct Argument<const LowerArguments&> {
  static constexpr bool IsOutput = false;
  bool Take(PyObject* given) {
    if (given == nullptr) return true;
    PyObject* const sequence = PySequence_Fast(given, "must be a sequence of arguments");
    if (sequence == nullptr) return false;
    const Py_ssize_t count = PySequence_Fast_GET_SIZE(sequence);
    texts_.reserve(static_cast<std::size_t>(count));
    bool taken = true;
    for (Py_ssize_t i = 0; taken && i < count; ++i) {
      taken = Add(PySequence_Fast_GET_ITEM(sequence, i));
    }
    Py_DECREF(sequence);
    return taken;
  }
  const LowerArguments& Get() const { return value; }
  static bool GiveBack() { return true; }

  LowerArguments value;

 private:
  // NumPy's scalars and those of ctypes are buffers without a dimension.
  bool Add(PyObject* given) {
    OrvexValue& made = value.values.emplace_back();
    if (PyUnicode_Check(given) || PyBytes_Check(given)) {
      std::string& text = texts_.emplace_back();
      made.kind = ORVEX_TEXT;
      if (!FromPython(given, text)) return false;
      made.as.text = text.data();
      made.count = static_cast<std::int32_t>(text.size());
      return true;
    }
    if (PyFloat_CheckExact(given)) {
      made.kind = ORVEX_R4;
      return FromPython(given, made.as.r4);
    }
    if (PyLong_CheckExact(given)) {
      made.kind = ORVEX_I4;
      return FromPython(given, made.as.i4);
    }
    auto& buffer = *buffers_.emplace_back(std::make_unique<Buffer>());
    return buffer.Open(given, Buffer::MayBeSingle) &&
           (Refer<std::int16_t>(buffer, ORVEX_I2, made) ||
            Refer<std::int32_t>(buffer, ORVEX_I4, made) || Refer<float>(buffer, ORVEX_R4, made) ||
            Refuse());
  }

  template <class T>
  static bool Refer(const Buffer& buffer, std::uint16_t kind, OrvexValue& made) {
    if (!buffer.Holds<T>()) return false;
    if (buffer.IsSingle()) {
      made.kind = kind;
      std::memcpy(&made.as, buffer.At(0), sizeof(T));
      return true;
    }
    if (buffer.IsReadOnly() || !buffer.IsPlain<T>()) return false;
    made.kind = static_cast<std::uint16_t>(kind | ORVEX_BYREF);
    made.count = static_cast<std::int32_t>(buffer.Count());
    made.as.i2Ref = reinterpret_cast<std::int16_t*>(buffer.At(0));
    return true;
  }
  static bool Refuse() {
    PyErr_SetString(PyExc_TypeError,
                    "must hold numbers, texts, and writable arrays of int16, int32 or float32");
    return false;
  }

  std::vector<std::string> texts_;
  std::vector<std::unique_ptr<Buffer>> buffers_;
};

/// What an operation answered, or why it failed.
struct LowerAnswer {
  Variant value;
  std::string fault;
  bool failed = false;
};

PyObject* NewObject(const LowerAnswer& answer) {
  if (!answer.failed) return NewObject(answer.value);
  PyErr_Format(PyExc_RuntimeError, "%s", answer.fault.c_str());
  return nullptr;
}

namespace {

template <class Body>
LowerAnswer Answered(const Body& body) {
  try {
    return {body(), {}, false};
  } catch (const std::exception& fault) {
    return {{}, fault.what(), true};
  }
}

LowerAnswer Invoke(Dispatch& lower, std::int32_t Id, std::int32_t Call,
                   const LowerArguments& Arguments) {
  return Answered(
      [&] { return ToVariant(lower.Invoke(Id, static_cast<OrvexCall>(Call), Arguments.values)); });
}

LowerAnswer Lookup(Dispatch& lower, std::string_view Name) {
  return Answered([&] { return Variant(lower.Lookup(Name)); });
}

using OfLower = MembersOf<Dispatch>;
const MemberRow LowerMembers[] = {
    OfLower::MayWait<&Invoke>("Invoke"),
    OfLower::Quick<&Lookup>("Lookup"),
};

PyObject* Represent(PyObject* self) { return PyUnicode_FromFormat("<%s>", Py_TYPE(self)->tp_name); }

}  // namespace

ClassRow LowerCoreClass() { return {"LowerCore", nullptr, LowerMembers, &Represent}; }

}  // namespace orif::python
