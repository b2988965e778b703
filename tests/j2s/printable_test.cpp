// The fast paths must give the same results as item-by-item conversion.
#include <limits>
#include <random>

#include "base/saturate.h"
#include "tests/j2s/synthetic.h"

namespace j2s_test {
namespace {

// Makes numbers as the parser does.
cJSON* make_number(double value) {
  cJSON* item = cJSON_CreateNumber(0);
  item->valuedouble = value;
  item->valueint = pq::saturate<int>(value);
  return item;
}

struct Texts {
  std::string formatted, compact;
};

// Makes random trees of everything that JSON and its parser can represent.
class RandomJson {
 public:
  cJSON* value(int depth) {
    const auto kind = random_() % (depth > 0 ? 8 : 6);
    switch (kind) {
      case 0:
        return cJSON_CreateString("te\"xt");
      case 1:
        return cJSON_CreateBool(0);
      case 6:
        return array(depth - 1);
      case 7:
        return object(depth - 1);
      default:
        return make_number(number());
    }
  }

  cJSON* object(int depth) {
    cJSON* object = cJSON_CreateObject();
    for (auto i = random_() % 5; i > 0; --i) {
      cJSON_AddItemToObject(object, i % 2 == 0 ? "even" : "odd", value(depth));
    }
    return object;
  }

 private:
  // Half of all arrays contain only integers.
  cJSON* array(int depth) {
    const bool integers = random_() % 2 == 0;
    cJSON* array = cJSON_CreateArray();
    for (auto i = random_() % 9; i > 0; --i) {
      cJSON_AddItemToArray(array, integers ? make_number(integer()) : value(depth));
    }
    return array;
  }

  double integer() { return static_cast<int32_t>(random_() >> random_() % 32); }

  double number() {
    constexpr double kOdd[] = {0.0,
                               -0.0,
                               0.5,
                               1e300,
                               -2147483649.0,
                               2147483648.0,
                               1e15,
                               std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()};
    return random_() % 3 == 0 ? kOdd[random_() % std::size(kOdd)] : integer();
  }

  std::mt19937 random_{7};
};

TEST(MakePrintable, KeepsEveryByteOfTheTexts) {
  RandomJson random;
  for (int i = 0; i < 5'000; ++i) {
    const Json tree = own(random.object(4));
    const Json copy = own(cJSON_Duplicate(tree.get(), 1));
    const Texts before = {print_formatted(tree.get()), print(tree.get())};
    j2s_make_printable(tree.get(), true);
    j2s_make_printable(copy.get(), false);
    ASSERT_EQ(print_formatted(tree.get()), before.formatted);
    ASSERT_EQ(print(copy.get()), before.compact);
    // The parser turns numbers that no text can represent into null.
    ASSERT_EQ(print(parse(before.formatted).get()), print(parse(before.compact).get()));
  }
}

TEST(LoadArray, StoresEachElementAsAMemberOfItsOwn) {
  constexpr const char* kValues[] = {"300",  "-1",    "0.9",  "-32769", "2147483648", "-2147483649",
                                     "1e20", "1e300", "null", "\"7\"",  "true",       "[7]"};
  constexpr uint16_t kCount = std::size(kValues);
  constexpr uint32_t kSizes[] = {1, 1, 2, 2, 4, 4, 8, 8, 4, 8};
  for (uint8_t type = J2S_TYPE_INT8; type <= J2S_TYPE_DOUBLE; ++type) {
    const uint32_t size = kSizes[type - J2S_TYPE_INT8];
    Tables arrays;
    arrays.add_struct("array", {{"v", type, J2S_FLAG_ARRAY, 0, size, kCount, size}});
    std::string elements;
    unsigned char singly[8 * kCount] = {};
    for (uint32_t i = 0; i < kCount; ++i) {
      Tables tables;
      tables.add_struct("single", {{"v", type, 0, i * size, size, 1, size}});
      EXPECT_EQ(tables.load(std::string(R"({"v":)") + kValues[i] + "}", &singly[0]), 0);
      elements += std::string(i == 0 ? "" : ",") + kValues[i];
    }
    unsigned char together[8 * kCount] = {};
    EXPECT_EQ(arrays.load("{\"v\":[" + elements + ",5]}", &together[0]), 0);
    EXPECT_EQ(std::memcmp(&together[0], &singly[0], sizeof together), 0) << int{type};
  }
}

}  // namespace
}  // namespace j2s_test
