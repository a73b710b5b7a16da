// SPDX-License-Identifier: Apache-2.0
// The product models that hard type and logic id tell. Both are read on every board.
#include "base/result.hpp"
#include "board/hard_types.hpp"
#include "install/model.hpp"

#include <moxboot/board.h>
#include <moxboot/model.h>

using namespace moxboot;

namespace
{

// A message with the logic id's failure code.
struct CodeText {
    const char *text;

    consteval CodeText(const char *given) : text(given)
    {
        int conversions = 0;
        for (const char *at = given; *at != '\0'; ++at)
            if (*at == '%')
                conversions += at[1] == 'x' ? 1 : 2;
        if (conversions != 1)
            a_code_text_has_one_hexadecimal_conversion();
    }

  private:
    // Only declared: reaching it makes the compile-time check fail.
    static void a_code_text_has_one_hexadecimal_conversion();
};

constexpr CodeText id_unread = "Drvboot get local encap logic id NOK, return 0x%x\n";
constexpr CodeText q7z_id_unread = "Drvboot GL6264_Q7Z get local encap logic id NOK, return 0x%x\n";
constexpr CodeText h632u_id_unread = "Drvboot Ploxy_H632U get local encap logic id NOK, return 0x%x\n";

constexpr uint32_t q7[] = {0x32F08200, 0x32F08201, 0x32F08202, 0x32F08203, 0x32F08204, 0x32F08205};
constexpr uint32_t q7z[] = {0x32F08300};
constexpr uint32_t r22[] = {0x32F0B000};
constexpr uint32_t h639q[] = {0x32F0B020};
constexpr uint32_t h632[] = {0x32F0B050, 0x32F0B090};
constexpr uint32_t h632u[] = {0x32F0B060, 0x32F0B070};
constexpr uint32_t h622[] = {0x32F0B080, 0x32F0B010};
constexpr uint32_t h622q[] = {0x32F0B030};

constexpr uint32_t q7_board = 0x9002071C;
constexpr uint32_t r22_board = 0x90B2077D;

uint32_t answer(uint32_t type, std::span<const uint32_t> logic_ids, PlainText type_failure,
                CodeText id_failure, uint8_t *flag)
{
    uint32_t hard_type = 0;
    if (flag == nullptr || !read_hard_type(type_failure, &hard_type))
        return failed;
    uint32_t logic_id = 0;
    if (uint32_t code = MOX_GetSelfEncapLogicId(&logic_id); code != ok) {
        report(DRVBOOT_TRACE_FAILURE, id_failure.text, code);
        return failed;
    }
    *flag = hard_type == type && contains(logic_ids, logic_id);
    return ok;
}

} // namespace

// Three models share one model's words.
uint32_t DrvBoot_IsInstallRunFile_GL6264_Q7(uint8_t *flag, uintptr_t)
{
    return answer(q7_board, q7, MODEL_UNREAD("GL6264_Q7Z"), q7z_id_unread, flag);
}

uint32_t DrvBoot_IsInstallRunFile_GL6264_Q7Z(uint8_t *flag, uintptr_t)
{
    return answer(q7_board, q7z, MODEL_UNREAD("GL6264_Q7Z"), q7z_id_unread, flag);
}

uint32_t DrvBoot_IsInstallRunFile_Ploxy_H632(uint8_t *flag, uintptr_t)
{
    return answer(r22_board, h632, MODEL_UNREAD("GL6264_Q7Z"), q7z_id_unread, flag);
}

uint32_t DrvBoot_IsInstallRunFile_Ploxy_H632U(uint8_t *flag, uintptr_t)
{
    return answer(r22_board, h632u, MODEL_UNREAD("Ploxy_H632U"), h632u_id_unread, flag);
}

uint32_t DrvBoot_IsInstallRunFile_GL6264_R22(uint8_t *flag, uintptr_t)
{
    return answer(r22_board, r22, MODEL_UNREAD("GL6264 R22"), id_unread, flag);
}

uint32_t DrvBoot_IsInstallRunFile_GL6264_H639Q(uint8_t *flag, uintptr_t)
{
    return answer(r22_board, h639q, MODEL_UNREAD("GL6264 H639Q"), id_unread, flag);
}

uint32_t DrvBoot_IsInstallRunFile_GL6264_H622(uint8_t *flag, uintptr_t)
{
    return answer(r22_board, h622, MODEL_UNREAD("GL6264 H622"), id_unread, flag);
}

uint32_t DrvBoot_IsInstallRunFile_GL6264_H622Q(uint8_t *flag, uintptr_t)
{
    return answer(r22_board, h622q, MODEL_UNREAD("GL6264 H622Q"), id_unread, flag);
}
