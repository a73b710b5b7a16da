// SPDX-License-Identifier: Apache-2.0
// The product's name and type, by service type and chassis.
#include "support/from_library.hpp"
#include "trust/product_fixture.hpp"

#include <moxboot/platform.h>

#include <cerrno>
#include <dlfcn.h>

namespace
{

// What the library asked of the chassis, and an answer of the test's own.
struct Asked {
    std::string device;
    std::uint32_t l1type, l2type, index, value, size;
    bool operator==(const Asked &) const = default;
};
std::vector<Asked> asked;
struct OwnAnswer {
    std::optional<std::uint32_t> value;
    std::uint32_t result;
};
std::optional<OwnAnswer> own_answer;

} // namespace

uint32_t iof_get_attr_value(const char *device, uint32_t l1type, uint32_t l2type, uint32_t index, void *value,
                            uint32_t size)
{
    const bool spied = test::from_library(__builtin_return_address(0));
    if (spied) {
        std::uint32_t before = 0;
        std::memcpy(&before, value, sizeof before);
        asked.push_back({device, l1type, l2type, index, before, size});
    }
    if (!spied || !own_answer)
        return reinterpret_cast<decltype(&iof_get_attr_value)>(dlsym(RTLD_NEXT, "iof_get_attr_value"))(
            device, l1type, l2type, index, value, size);
    if (own_answer->value)
        std::memcpy(value, &*own_answer->value, sizeof *own_answer->value);
    return own_answer->result;
}

namespace test
{
namespace
{

constexpr std::uint32_t chassis_item = 0x10002401;
const std::string ask_service = "env read product_service_type";
const std::string ask_chassis = "get /dev/chassis0 0x10002401";
constexpr std::uint32_t unanswered = 10000;
constexpr unsigned past_the_variable = 2; // copies that reading the service type takes

struct Product {
    std::uint32_t service;
    std::int32_t chassis;
    std::string name, type;
};
const Product products[] = {
    {102, 10010, "KYP 362R-W", "KYP 362R"},
    {148, 10011, "KYP 362V-H", "KYP 362V"},
    {149, 30002, "KYP 432V", "KYP 432V"},
    {119, 30000, "KYP 467R", "KYP 467R"},
};

Said name_failure(std::uint32_t result)
{
    return failure(text("[drvboot] get product name not normal, ret = %u.\n\n", result));
}
Said type_failure(std::uint32_t result)
{
    return failure(text("[drvboot] get product type not normal, ret = %u.\n\n", result));
}
Said copy_failure(int result)
{
    return failure(text("name copy unsuccessfully, ret is %d.\n", result));
}
Said type_told(const std::string &type)
{
    return information("[drvboot] Drvboot_GetProductServiceType get product type " + type + ".\n\n");
}

class ProductNameTest : public ProductTest
{
  protected:
    void SetUp() override
    {
        ProductTest::SetUp();
        own_answer.reset();
        asked.clear();
    }
    void be_product(const std::string &service, std::uint32_t chassis)
    {
        board.set_boot_env("product_service_type", service);
        board.set_item(chassis0, chassis_item, chassis);
        forget_journal();
    }
    void be_product(const Product &product)
    {
        be_product(std::to_string(product.service), static_cast<std::uint32_t>(product.chassis));
    }
    std::uint32_t look_up(std::uint32_t size)
    {
        out.fill('#');
        return DrvBoot_GetProductNameFromDevm(out.data() + 1, size);
    }
    void expect_name(const std::string &name, std::uint32_t size = 30)
    {
        EXPECT_EQ(during([&] { EXPECT_EQ(look_up(size), 0u); }), nothing()) << name;
        EXPECT_EQ(written(), only(name + '\0'));
    }
    void expect_no_name(const Said &said = nothing(), std::uint32_t size = 30)
    {
        EXPECT_EQ(during([&] { EXPECT_EQ(look_up(size), unanswered); }), said);
    }
};

TEST_F(ProductNameTest, TheTableHasTheseRowsInThisOrder)
{
    ASSERT_EQ(std::size(g_productNameStr), std::size(products));
    for (std::size_t i = 0; i < std::size(products); ++i) {
        EXPECT_EQ(g_productNameStr[i].service_type, products[i].service);
        EXPECT_EQ(g_productNameStr[i].chassis_value, products[i].chassis);
        EXPECT_EQ(g_productNameStr[i].name, products[i].name);
    }
}

TEST_F(ProductNameTest, ServiceTypeAndChassisMustBothMatch)
{
    std::vector<std::uint32_t> services = {0, 101, 103, 0xffffffff}, chassis = {0, 255, 10009, 0xffffffff};
    for (const Product &product : products) {
        services.push_back(product.service);
        chassis.push_back(static_cast<std::uint32_t>(product.chassis));
    }
    unsigned found = 0;
    for (std::uint32_t service : services)
        for (std::uint32_t value : chassis) {
            SCOPED_TRACE(text("service type %u, chassis %u", service, value));
            be_product(std::to_string(service), value);
            const auto *row =
                std::find_if(std::begin(products), std::end(products), [&](const Product &each) {
                    return each.service == service && static_cast<std::uint32_t>(each.chassis) == value;
                });
            if (row == std::end(products)) {
                expect_no_name();
                EXPECT_EQ(written(), only(""));
            } else {
                ++found;
                expect_name(row->name);
            }
            EXPECT_EQ(requests(), (std::vector<std::string>{ask_service, ask_chassis}));
        }
    EXPECT_EQ(found, 4u);
}

TEST_F(ProductNameTest, TheChassisIsAskedForFourBytesOfItsAttribute)
{
    be_product(products[0]);
    expect_name("KYP 362R-W");
    EXPECT_EQ(asked, (std::vector<Asked>{{"/dev/chassis0", 0x1000000, 0x10002401, 0, 255, 4}}));
}

TEST_F(ProductNameTest, AChassisThatDoesNotAnswerHasNoName)
{
    be_product(products[0]);
    refuse(chassis0, chassis_item);
    expect_no_name();
    deny(chassis0, EACCES);
    expect_no_name();
    for (std::uint32_t result : {1u, 0x2710u, 0x80000000u, 0xffffffffu}) {
        own_answer = {10010, result};
        expect_no_name();
    }
    own_answer = {std::nullopt, 0}; // it is then still 255
    expect_no_name();
    EXPECT_EQ(written(), only(""));
    own_answer = {10010, 0};
    expect_name("KYP 362R-W");
}

TEST_F(ProductNameTest, WithoutAPlaceTheChassisIsNotAsked)
{
    be_product(products[0]);
    EXPECT_EQ(during([] { EXPECT_EQ(DrvBoot_GetProductNameFromDevm(nullptr, 30), unanswered); }), nothing());
    EXPECT_EQ(requests(), std::vector<std::string>{ask_service});
}

TEST_F(ProductNameTest, ANameThatDoesNotFitIsTold)
{
    for (const Product &product : products) {
        be_product(product);
        const auto length = static_cast<std::uint32_t>(product.name.size());
        expect_name(product.name, length + 1);
        for (std::uint32_t size : {0u, 1u, length})
            expect_no_name(copy_failure(ERANGE), size);
        answer_platform("strncpy_s", 77, past_the_variable);
        expect_no_name(copy_failure(77));
        answer_platform("strncpy_s", -1, past_the_variable);
        expect_no_name(copy_failure(-1));
    }
}

TEST_F(ProductNameTest, TheServiceTypeIsADecimalNumber)
{
    const std::pair<std::optional<std::string>, std::uint32_t> values[] = {
        {"102", 102},        {"0102", 102}, {" 102", 102},     {"102x", 102},
        {"0x66", 0},         {"", 0},       {"x102", 0},       {"66", 66},
        {"4294967295", ~0u}, {"-1", ~0u},   {std::nullopt, 0}, {std::string(252, '0') + "102", 102},
    };
    for (const auto &[value, wanted] : values) {
        board.set_boot_env("product_service_type", value);
        forget_journal();
        EXPECT_EQ(during([wanted = wanted] { EXPECT_EQ(DRV_GetProductSeviceType(), wanted); }), nothing())
            << value.value_or("(none)");
        EXPECT_EQ(requests(), std::vector<std::string>{ask_service});
    }
}

TEST_F(ProductNameTest, AnUnreadableServiceTypeIsNone)
{
    be_product(products[0]);
    deny(envinfo0, EACCES);
    EXPECT_EQ(during([] { EXPECT_EQ(DRV_GetProductSeviceType(), 0u); }),
              message(1, "\n\r [Getenv_s] Can't open file /dev/envinfo0!\n"));
    EXPECT_EQ(DRV_GetProductSeviceType(), 102u);
}

// ---- the two handlers ------------------------------------------------------------------------------------

TEST_F(ProductNameTest, TheNameIsHandedOut)
{
    for (const Product &product : products) {
        be_product(product);
        for (std::uint32_t length : {17u, 18u, 63u, 0xffffffffu})
            expect(name_type, length, 0, product.name + '\0');
        EXPECT_EQ(Drvboot_GetProductName(9, 9, out.data(), 17), 0u);
        EXPECT_EQ(std::string(out.data()), product.name);
    }
}

TEST_F(ProductNameTest, TheTypeEndsAtTheFirstDash)
{
    for (const Product &product : products) {
        be_product(product);
        for (std::uint32_t length : {17u, 18u, 31u, 63u, 0xffffffffu})
            expect(service_type, length, 0, product.type + '\0', type_told(product.type));
        EXPECT_EQ(Drvboot_GetProductServiceType(9, 9, out.data(), 17), 0u);
        EXPECT_EQ(std::string(out.data()), product.type);
    }
}

TEST_F(ProductNameTest, BothNeedSeventeenBytes)
{
    be_product(products[0]);
    for (std::uint32_t length : {0u, 1u, 11u, 15u, 16u}) {
        const Said name = failure(text("[drvboot] get product name not normal, input len = %u.\n\n", length));
        const Said type = failure(
            text("[drvboot] get product type not normal, input len = %d.\n\n", static_cast<int>(length)));
        expect(name_type, length, 1, "", name);
        expect_nowhere(name_type, length, 1, name);
        expect(service_type, length, 1, "", type);
        expect_nowhere(service_type, length, 1, type);
    }
    EXPECT_TRUE(operations().empty());
}

TEST_F(ProductNameTest, AnUnknownProductIsTold)
{
    be_product("102", 10011);
    expect(name_type, 17, 1, "", name_failure(unanswered));
    expect(service_type, 17, 1, "", type_failure(unanswered));
    be_product(products[0]);
    refuse(chassis0, chassis_item, 2);
    expect(name_type, 17, 1, "", name_failure(unanswered));
    expect(service_type, 17, 1, "", type_failure(unanswered));
}

TEST_F(ProductNameTest, ANullPlaceIsTold)
{
    be_product(products[0]);
    expect_nowhere(name_type, 17, 1, name_failure(unanswered));
    expect_nowhere(service_type, 17, 1,
                   failure(text("[drvboot] get product type not normal, strncpy_s ret = %d.\n\n", EINVAL)));
}

TEST_F(ProductNameTest, ACopyThatFailsIsTold)
{
    be_product(products[0]);
    answer_platform("strncpy_s", 77, past_the_variable);
    expect(name_type, 17, 1, "", copy_failure(77) + name_failure(unanswered));
    answer_platform("strncpy_s", 78, past_the_variable);
    expect(service_type, 17, 1, "", copy_failure(78) + type_failure(unanswered));
    answer_platform("strncpy_s", -79, past_the_variable + 1);
    expect(service_type, 17, 1, "",
           failure("[drvboot] get product type not normal, strncpy_s ret = -79.\n\n"));
}

} // namespace
} // namespace test
