// The host of the fixed interface for tests, benchmarks and fuzzers: the arrays of tornwalzen.h under their names, with
// the lengths that the header asks for, and the two calls. Who wants another kind of memory gives another Memory.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "tornwalzen.h"

namespace host_kit {

/// Vectors of exactly the lengths promised, so that an address checker sees every step beyond. New entries are zero.
struct ExactMemory {
  template <class T>
  using Array = std::vector<T>;

  template <class T>
  Array<T> make(const char* /*name*/, std::int64_t length) const {
    return Array<T>(static_cast<std::size_t>(length));
  }
  template <class T>
  static void resize(Array<T>& array, std::int64_t length) {
    array.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    array.shrink_to_fit();
  }
};

/// What the progress handler is told.
struct ProgressTold {
  struct Event {
    double value;
    std::int32_t kind;
    std::string text;
  };
  std::vector<Event> events;
  std::vector<double> fractions;
  std::string texts;       // one per line, times left out
  std::int32_t times = 0;  // time texts behind the last fraction

  /// As the header says: the last fraction is 1.0, two time texts follow it, ISTAT is not -1.
  bool converged(std::int32_t istat) const {
    return !fractions.empty() && fractions.back() == 1.0 && times == 2 && istat != -1;
  }

  /// The handler; self: a ProgressTold.
  static void take(void* self, const TornwalzenProgress* record) {
    auto& told = *static_cast<ProgressTold*>(self);
    const std::string text = record->text != nullptr ? record->text : "";
    told.events.push_back({record->value, record->kind, text});
    if (record->kind == 0) {
      told.fractions.push_back(record->value);
      told.times = 0;
    } else if (text.rfind("TIME:", 0) == 0) {
      ++told.times;
    } else {
      told.texts += text + '\n';
    }
  }
};

/// Memory: make<T>(name, length) gives an Array<T> of that length, resize(array, length) keeps its front.
template <class Memory = ExactMemory>
class FixedHost {
 public:
  using Ints = typename Memory::template Array<std::int32_t>;
  using Reals = typename Memory::template Array<double>;

  explicit FixedHost(const Memory& memory = {})
      : MODE(memory.template make<std::int32_t>("MODE", 1)),
        NKNO(memory.template make<std::int32_t>("NKNO", 1)),
        NELE(memory.template make<std::int32_t>("NELE", 1)),
        NEQ(memory.template make<std::int32_t>("NEQ", 1)),
        MNSYSM(memory.template make<std::int32_t>("MNSYSM", 1)),
        NIWOR(memory.template make<std::int32_t>("NIWOR", 1)),
        NRK(memory.template make<std::int32_t>("NRK", 1)),
        INZI(memory.template make<std::int32_t>("INZI", 0)),
        INTA(memory.template make<std::int32_t>("INTA", 0)),
        COLS(memory.template make<std::int32_t>("COLS", 0)),
        ROWI(memory.template make<std::int32_t>("ROWI", 0)),
        WORK(memory.template make<std::int32_t>("WORK", 0)),
        ARFA(memory.template make<std::int32_t>("ARFA", 0)),
        ICTRL(memory.template make<std::int32_t>("ICTRL", 1)),
        ISTAT(memory.template make<std::int32_t>("ISTAT", 1)),
        KNOTS(memory.template make<double>("KNOTS", 0)),
        KNG(memory.template make<double>("KNG", 0)),
        RWORK(memory.template make<double>("RWORK", 0)),
        RR(memory.template make<double>("RR", 0)),
        RB(memory.template make<double>("RB", 0)),
        RX(memory.template make<double>("RX", 0)),
        TEMP(memory.template make<double>("TEMP", 0)),
        KNZ(memory.template make<double>("KNZ", 0)),
        KNA(memory.template make<double>("KNA", 0)),
        ELG(memory.template make<double>("ELG", 0)),
        SYSM(memory.template make<double>("SYSM", 0)),
        RXA(memory.template make<double>("RXA", 0)),
        WRHS(memory.template make<double>("WRHS", 0)),
        EVAL(memory.template make<double>("EVAL", 0)) {}

  std::int32_t nodes() const { return NKNO[0]; }
  std::int32_t triangles() const { return NELE[0]; }

  /// Takes a mesh: the counts and every array whose length follows from them; all unknowns free, unless `flags` tell.
  ///   knots  x, y, z of node 1, of node 2, ... (mm)
  ///   inzi   three nodes per triangle, from 1
  ///   flags  1 free, 0 held, per unknown
  void open(const std::vector<double>& knots, const std::vector<std::int32_t>& inzi,
            const std::vector<std::int32_t>& flags = {}) {
    const auto nn = static_cast<std::int64_t>(knots.size() / 3),
               ne = static_cast<std::int64_t>(inzi.size() / 3);
    NKNO[0] = static_cast<std::int32_t>(nn);
    NELE[0] = static_cast<std::int32_t>(ne);
    NEQ[0] = static_cast<std::int32_t>(2 * nn);
    MNSYSM[0] =
        static_cast<std::int32_t>(4 * (nn + 3 * ne) - nn);  // 3 entries a node, 4 a pair, 3 pairs a triangle
    fill(KNOTS, knots);
    fill(INZI, inzi);
    fill(ARFA, flags.empty() ? std::vector<std::int32_t>(2 * static_cast<std::size_t>(nn), 1) : flags);
    Memory::resize(INTA, 3 * ne);
    Memory::resize(COLS, 2 * nn + 1);
    Memory::resize(ROWI, MNSYSM[0]);
    for (Reals* vector : {&RR, &RB, &RX, &TEMP, &RXA, &WRHS}) Memory::resize(*vector, 2 * nn);
    for (Reals* table : {&KNG, &KNZ, &KNA}) Memory::resize(*table, 3 * nn);
    for (Reals* table : {&ELG, &EVAL}) Memory::resize(*table, 5 * ne);
  }

  /// OSINIT, with the mode that is set, or that is given. Returns ISTAT.
  std::int32_t init(std::int32_t mode) {
    MODE[0] = mode;
    return init();
  }
  std::int32_t init() {
    OSINIT(given("MODE", MODE), given("NKNO", NKNO), given("NELE", NELE), given("NEQ", NEQ),
           given("MNSYSM", MNSYSM), given("NIWOR", NIWOR), given("NRK", NRK), given("KNOTS", KNOTS),
           given("INZI", INZI), given("INTA", INTA), nullptr, given("COLS", COLS), given("ROWI", ROWI),
           given("WORK", WORK), given("RWORK", RWORK), nullptr, nullptr, nullptr, nullptr, given("KNG", KNG),
           nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, given("ISTAT", ISTAT));
    return ISTAT[0];
  }

  /// Gives the arrays the lengths that the last `init` reported.
  void supply() {
    Memory::resize(ROWI, MNSYSM[0]);
    Memory::resize(SYSM, MNSYSM[0]);
    Memory::resize(WORK, NIWOR[0]);
    if (MODE[0] > 1) Memory::resize(RWORK, NRK[0]);
  }

  /// The three modes. False: one was refused, see MODE and ISTAT.
  bool setUp() {
    for (std::int32_t mode = 1; mode <= 3; ++mode) {
      if (init(mode) != 0) return false;
      supply();
    }
    return true;
  }

  /// OSMAIN, with the selector that is set, or that is given. Returns ISTAT.
  std::int32_t analyse(std::int32_t material) {
    ICTRL[0] = material;
    return analyse();
  }
  std::int32_t analyse() {
    OSMAIN(given("INTA", INTA), given("ARFA", ARFA), given("COLS", COLS), given("ROWI", ROWI),
           given("WORK", WORK), given("RWORK", RWORK), given("RR", RR), given("RB", RB), given("RX", RX),
           given("TEMP", TEMP), given("KNG", KNG), given("KNZ", KNZ), given("KNA", KNA), given("ELG", ELG),
           given("SYSM", SYSM), given("RXA", RXA), given("WRHS", WRHS), given("ICTRL", ICTRL),
           given("EVAL", EVAL), given("ISTAT", ISTAT));
    return ISTAT[0];
  }

  /// The argument of that name is NULL in the calls to come, as of now no other; empty: none.
  void omit(const std::string& name) { omitted_ = name; }

  Ints MODE, NKNO, NELE, NEQ, MNSYSM, NIWOR, NRK, INZI, INTA, COLS, ROWI, WORK, ARFA, ICTRL, ISTAT;
  Reals KNOTS, KNG, RWORK, RR, RB, RX, TEMP, KNZ, KNA, ELG, SYSM, RXA, WRHS, EVAL;

 private:
  template <class Array, class Values>
  static void fill(Array& array, const Values& values) {
    Memory::resize(array, static_cast<std::int64_t>(values.size()));
    if (!values.empty()) std::memcpy(array.data(), values.data(), values.size() * sizeof(values[0]));
  }
  template <class Array>
  auto* given(const char* name, Array& array) const {
    return omitted_ == name ? nullptr : array.data();
  }
  std::string omitted_;
};

}  // namespace host_kit
