// Decks by name: read in two steps, written, read back to the same bits; and files that are none.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <bit>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "deckio/deck_file.hpp"
#include "deckio/temporary_folder.hpp"
#include "tornwalzen_deck.h"

namespace {

class DeckHost : public TemporaryFolder {
 protected:
  // The two steps of the header's example. Returns the kind of the first error.
  int32_t take(const std::string& name) {
    const int32_t kind = tornwalzenDeckCounts(name.c_str(), &sizes, &error);
    if (kind != TORNWALZEN_DECK_OK) return kind;
    sizes.maxkno = sizes.nkno;
    sizes.maxele = sizes.nele;
    sizes.maxsys = sizes.neq;
    kng.assign(3 * static_cast<std::size_t>(sizes.nkno), 0.0);
    inta.assign(3 * static_cast<std::size_t>(sizes.nele), 0);
    arfa.assign(static_cast<std::size_t>(sizes.neq), -1);
    return tornwalzenDeckRead(name.c_str(), &sizes, inta.data(), arfa.data(), kng.data(), &error);
  }
  std::string errorText() const {
    char line[512];
    tornwalzenDeckErrorText(&error, line, sizeof line);
    return line;
  }

  TornwalzenDeckSizes sizes{};
  TornwalzenDeckError error{};
  std::vector<double> kng;
  std::vector<int32_t> inta, arfa;
};

const std::string triangle =
    "GEOMETRIE DEFORMIERBARER KOERPER\nBEGINN TORNWALZEN_E\nKNOTENGEOMETRIE\n3\nLUECKENLOS\nLISTENGESTEUERT\n"
    "1 0 0 0\n2 1 0 0\n3 0 1 0\nINZIDENZTAFEL\n1\nLUECKENLOS\nLISTENGESTEUERT\n1 81 1 2 3\nENDE\n2\n1\n2\n";

TEST_F(DeckHost, ReadsInTwoSteps) {
  write("d", triangle);
  ASSERT_EQ(take(path("d")), TORNWALZEN_DECK_OK) << errorText();
  EXPECT_EQ(kng, (std::vector<double>{0, 1, 0, 0, 0, 1, 0, 0, 0}));
  EXPECT_EQ(inta, (std::vector<int32_t>{1, 2, 3}));
  EXPECT_EQ(arfa, (std::vector<int32_t>{0, 0, 1, 1, 1, 1}));
}

TEST_F(DeckHost, CountsAreBelievedOnlyWhenTheRecordsAreThere) {
  write("d", "a\nb\nc\n9\n");
  EXPECT_EQ(take(path("d")), TORNWALZEN_DECK_ENDED);
  write("d", "\n\n\n1073741823\n\n\n1 0 0 0\n");
  EXPECT_EQ(take(path("d")), TORNWALZEN_DECK_ENDED);
  EXPECT_EQ(errorText(),
            path("d") + ":8:1: expected an integer: the number of node 2, found the end of the file");
  write("d", "\n\n\n0\n\n\n\n2147483647\n\n\n1 81 1 1 1\n");
  EXPECT_EQ(take(path("d")), TORNWALZEN_DECK_ENDED);
  write("d", "\n\n\n0\n\n\n\n0\n\n\n\n2147483647\n");
  EXPECT_EQ(take(path("d")), TORNWALZEN_DECK_ENDED);
}

TEST_F(DeckHost, TenBytesThatAnnounceTwoThousandMillionNodesAreRefusedAtOnce) {
  write("d", "\n\n\n2000000000");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(take(path("d")), TORNWALZEN_DECK_MAXSYS);  // twice the count is no 32-bit number
  EXPECT_EQ(errorText(), " maxsys zu klein ");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
  EXPECT_TRUE(kng.empty());
}

TEST_F(DeckHost, CapacitiesHold) {
  write("d", triangle);
  ASSERT_EQ(take(path("d")), TORNWALZEN_DECK_OK);
  for (int which = 0; which < 3; ++which) {
    TornwalzenDeckSizes small = sizes;
    --(which == 0 ? small.maxkno : which == 1 ? small.maxsys : small.maxele);
    const int32_t kinds[] = {TORNWALZEN_DECK_MAXKNO, TORNWALZEN_DECK_MAXSYS, TORNWALZEN_DECK_MAXELE};
    EXPECT_EQ(tornwalzenDeckRead(path("d").c_str(), &small, inta.data(), arfa.data(), kng.data(), &error),
              kinds[which]);
  }
}

TEST_F(DeckHost, AMissingFileIsNamedWithTheReason) {
  EXPECT_EQ(take(path("none")), TORNWALZEN_DECK_UNREADABLE);
  EXPECT_EQ(errorText(), path("none") + ": cannot be read: No such file or directory");
  EXPECT_EQ(tornwalzenDeckRecognise(path("none").c_str()), 0);
}

TEST_F(DeckHost, AFolderOrADeviceIsNoDeck) {
  EXPECT_EQ(take(path("")), TORNWALZEN_DECK_UNREADABLE);
  EXPECT_EQ(errorText(), path("") + ": cannot be read: not a plain file");
  EXPECT_EQ(take("/dev/zero"), TORNWALZEN_DECK_UNREADABLE);
}

TEST_F(DeckHost, APipeIsRefusedAtOnceThoughNobodyWritesIntoIt) {
  ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
  alarm(20);  // a read that waits ends the test
  EXPECT_EQ(take(path("pipe")), TORNWALZEN_DECK_UNREADABLE);
  EXPECT_EQ(errorText(), path("pipe") + ": cannot be read: not a plain file");
  EXPECT_EQ(tornwalzenDeckRecognise(path("pipe").c_str()), 0);
  alarm(0);
}

TEST_F(DeckHost, DecksAreRecognisedByContent) {
  write("deck", triangle);
  write("obj", "# cup\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
  write("empty", "");
  EXPECT_EQ(tornwalzenDeckRecognise(path("deck").c_str()), 1);
  EXPECT_EQ(tornwalzenDeckRecognise(path("obj").c_str()), 0);
  EXPECT_EQ(tornwalzenDeckRecognise(path("empty").c_str()), 0);
}

TEST_F(DeckHost, ADeckReadsBackToTheSameBits) {
  std::mt19937_64 random(5);
  const int32_t nkno = 500, nele = 300;
  std::vector<double> coordinates(3 * nkno);
  for (double& c : coordinates) do {
      c = std::bit_cast<double>(random());  // any size, down to the smallest and up to the largest
    } while (std::isnan(c));
  coordinates[0] = -0.0;
  coordinates[1] = std::numeric_limits<double>::infinity();
  coordinates[2] = 0.1;
  std::vector<int32_t> incidences(3 * nele), flags(2 * nkno);
  for (int32_t& i : incidences) i = 1 + static_cast<int32_t>(random() % nkno);
  for (int32_t& f : flags) f = random() % 4 != 0;
  ASSERT_EQ(tornwalzenDeckWrite(path("d").c_str(), nkno, nele, incidences.data(), flags.data(),
                                coordinates.data(), &error),
            TORNWALZEN_DECK_OK)
      << errorText();
  EXPECT_EQ(files(), 1u);
  EXPECT_EQ(tornwalzenDeckRecognise(path("d").c_str()), 1);
  ASSERT_EQ(take(path("d")), TORNWALZEN_DECK_OK) << errorText();
  EXPECT_EQ(inta, incidences);
  EXPECT_EQ(arfa, flags);
  ASSERT_EQ(kng.size(), coordinates.size());
  for (std::size_t i = 0; i < kng.size(); ++i)
    ASSERT_EQ(std::bit_cast<std::uint64_t>(kng[i]), std::bit_cast<std::uint64_t>(coordinates[i])) << i;
}

TEST_F(DeckHost, AWrittenDeckLooksLikeThis) {
  const double KNG[] = {0.0, 12.5, 1.0 / 3.0, -0.0, 1e-7, 100.0, 5.0, 5.0, 1e22};
  const int32_t INTA[] = {1, 2, 3}, ARFA[] = {0, 0, 1, 0, 1, 1};
  ASSERT_EQ(tornwalzenDeckWrite(path("d").c_str(), 3, 1, INTA, ARFA, KNG, &error), TORNWALZEN_DECK_OK);
  EXPECT_EQ(content("d"),
            "GEOMETRIE DEFORMIERBARER KOERPER\n"
            "BEGINN TORNWALZEN_E        \n"
            "KNOTENGEOMETRIE            \n"
            "3\n"
            "LUECKENLOS           \n"
            "LISTENGESTEUERT            \n"
            "1 0 -0 5\n"
            "2 12.5 1e-07 5\n"
            "3 0.3333333333333333 100 1e+22\n"
            "INZIDENZTAFEL\n"
            "1\n"
            "LUECKENLOS           \n"
            "LISTENGESTEUERT            \n"
            "1 81 1 2 3\n"
            "ENDE\n"
            "3\n1\n2\n4\n");
}

TEST_F(DeckHost, WithoutFlagsAllUnknownsAreFree) {
  const double KNG[] = {1.0, 2.0, 3.0};
  ASSERT_EQ(tornwalzenDeckWrite(path("d").c_str(), 1, 0, nullptr, nullptr, KNG, &error), TORNWALZEN_DECK_OK);
  ASSERT_EQ(take(path("d")), TORNWALZEN_DECK_OK) << errorText();
  EXPECT_EQ(arfa, (std::vector<int32_t>{1, 1}));
}

TEST_F(DeckHost, AnExistingFileIsReplaced) {
  write("d", std::string(10000, 'x'));
  ASSERT_EQ(tornwalzenDeckWrite(path("d").c_str(), 0, 0, nullptr, nullptr, nullptr, &error),
            TORNWALZEN_DECK_OK);
  EXPECT_EQ(take(path("d")), TORNWALZEN_DECK_OK) << errorText();
  EXPECT_EQ(files(), 1u);
}

TEST_F(DeckHost, AFolderThatIsNotThereCannotBeWrittenTo) {
  EXPECT_EQ(tornwalzenDeckWrite(path("none/d").c_str(), 0, 0, nullptr, nullptr, nullptr, &error),
            TORNWALZEN_DECK_UNWRITABLE);
  EXPECT_EQ(errorText(), path("none/d") + ": cannot be written: No such file or directory");
  EXPECT_EQ(files(), 0u);
}

TEST_F(DeckHost, AFullDiskIsTold) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "skipped: no /dev/full on this machine";
  EXPECT_EQ(tornwalzenDeckWrite("/dev/full", 0, 0, nullptr, nullptr, nullptr, &error),
            TORNWALZEN_DECK_UNWRITABLE);
  EXPECT_EQ(errorText(), "/dev/full: cannot be written: No space left on device");
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));  // written to, not replaced
}

TEST_F(DeckHost, AFileThatIsNotCompletedIsRemovedAndTheOldOneStays) {
  const std::string name = path("part.t51");
  write("part.t51", "of an earlier run");
  {
    tornwalzen::RecordFile unfinished;
    ASSERT_TRUE(unfinished.open(name.c_str()));
    unfinished.put("half a record", 13);
    EXPECT_TRUE(std::filesystem::exists(name + ".part"));
  }
  EXPECT_FALSE(std::filesystem::exists(name + ".part"));
  EXPECT_EQ(content("part.t51"), "of an earlier run");
}

TEST_F(DeckHost, ANameBeyondAllLengthsIsRefused) {
  const std::string name(5000, 'n');
  EXPECT_EQ(tornwalzenDeckWrite(name.c_str(), 0, 0, nullptr, nullptr, nullptr, &error),
            TORNWALZEN_DECK_UNWRITABLE);
  EXPECT_EQ(take(name), TORNWALZEN_DECK_UNREADABLE);
}

}  // namespace
