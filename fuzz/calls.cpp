// SPDX-License-Identifier: Apache-2.0
// A hostile caller: any calls in any order, with null pointers, too little room, overlong texts and numbers
// of any size wherever the headers say what becomes of them. The driver and the platform are no friends
// either.
#include "fuzz/hostile_driver.hpp"
#include "fuzz/hostile_platform.hpp"
#include "fuzz/questions.hpp"

#include <moxboot/moxboot.h>

namespace
{

using fuzz::Input;
using fuzz::Room;

// A text of some length, or none at all.
class Text
{
  public:
    explicit Text(Input &input, std::size_t most = 400)
        : none_(input.byte() == 0), text_(none_ ? "" : input.text(most))
    {
    }
    operator const char *() const
    {
        return none_ ? nullptr : text_.c_str();
    }

  private:
    bool none_;
    std::string text_;
};

// A place for one T, or none.
template <typename T>
class Place
{
  public:
    explicit Place(Input &input) : room_(input.byte() != 0 ? 1 : 0) {}
    operator T *()
    {
        return room_.count() != 0 ? room_.get() : nullptr;
    }

  private:
    Room<T> room_;
};

void null_pointers(Input &input)
{
    using Word = Place<std::uint32_t>;
    const std::uint32_t which = input.below(16);
    switch (which) {
    case 0:
        MOX_GetBoardHardType(Word(input));
        break;
    case 1:
        MOX_GetHard_Info(Place<MoxHardInfo>(input));
        break;
    case 2:
        drvboot_ioctrl(nullptr);
        break;
    case 3:
        MOX_GetRoleOfBoard(Word(input));
        break;
    case 4:
        MOX_GetBoardRunTime(Place<std::uint64_t>(input));
        break;
    case 5:
        MOX_GetCPURunTime(Word(input), Word(input));
        break;
    case 6:
        Drvboot_GetTime(Place<DrvbootLocalTime>(input));
        break;
    case 7:
        MOX_GetBackupState(Place<std::uint16_t>(input));
        break;
    case 8:
        MOX_PdtStartupCheck(Word(input));
        break;
    case 9:
        MOX_GetPdtSTMItemNum(Word(input));
        break;
    case 10:
        MOX_ReadResetReasonMode(nullptr);
        break;
    case 11:
        MOX_SelfReset(input.word(), Place<MoxResetDate>(input));
        break;
    case 12:
        MOX_PdtGetStartupFileSyncInfo(nullptr);
        break;
    case 13:
        entropy_init(Place<EntropyState>(input));
        break;
    case 14:
        MOX_QueryBlackbox(nullptr, Word(input), nullptr);
        break;
    default:
        MOX_GetMemFsCount(Word(input));
        break;
    }
}

void texts_and_room(Input &input)
{
    const std::uint32_t room = input.below(300);
    Room<char> out(room);
    switch (input.below(8)) {
    case 0:
        MOX_GetSysBackupPath(Text(input), out.get(), room);
        break;
    case 1:
        MOX_GetPBAPath(out.get(), room);
        break;
    case 2:
        MOX_GetResPackage(out.get(), room);
        break;
    case 3:
        MOX_GetPdtPath(input.byte() & 1, Text(input), out.get(), room);
        break;
    case 4:
        DrvBoot_FormatSrcPath(Text(input), Text(input), Text(input), out.get(), room);
        break;
    case 5:
        unknown_reset_info(out.get(), room);
        break;
    case 6:
        if (room > 0)
            TPMAgent_GetfileName(Text(input), out.get(), room);
        break;
    default:
        drv_getenv_s(Text(input), out.get(), static_cast<std::int32_t>(room));
        break;
    }
}

void bytes_and_room(Input &input)
{
    const std::uint32_t room = input.below(600);
    Room<std::uint8_t> bytes(room);
    switch (input.below(6)) {
    case 0:
        MOX_ConsolePrint(bytes.get(), room);
        break;
    case 1:
        MOX_PdtDoAction(static_cast<std::int32_t>(input.byte()), bytes.get(), room);
        break;
    case 2:
        drvboot_full_write(1, bytes.get(), room);
        break;
    case 3:
        entropy_time_consumer(bytes.get(), static_cast<std::int32_t>(room));
        break;
    case 4:
        MOX_GetPdtSTMItem(Room<PdtStmItem>(3).get(), input.word());
        break;
    default:
        IsExistInHWList(input.word(), Room<std::uint32_t>(5).get(), 5);
        break;
    }
}

void numbers(Input &input)
{
    const std::uint32_t number = input.word();
    switch (input.below(14)) {
    case 0:
        drvboot_IsMpu(number);
        break;
    case 1:
        drvboot_IsHaBoard(number);
        break;
    case 2:
        drvboot_IsLpu(number);
        break;
    case 3:
        MOX_GetBlockTime(number);
        break;
    case 4:
        MOX_SetBoardBackupState(number);
        break;
    case 5:
        drvboot_impl_set_brd_soft_active_state(number);
        break;
    case 6:
        WDT_Ctrl(number);
        break;
    case 7:
        MOX_IsBoardSuppSelfRun(number);
        break;
    case 8:
        DrvBoot_SetSoftReset_Switch(number);
        break;
    case 9:
        MOX_PdtSetSystemTime(static_cast<std::int32_t>(number), static_cast<std::int32_t>(input.word()));
        break;
    case 10:
        DrvBootBlackBoxInvalidLen(number);
        break;
    case 11:
        rol64(number, input.word());
        break;
    case 12:
        MOX_SetBoardAttr(number, &number);
        break;
    default:
        MOX_IsBoardSupportSoftReset(number);
        break;
    }
}

void records(Input &input)
{
    AddrDes descriptor;
    input.take(&descriptor, sizeof descriptor);
    std::uint32_t address = 0;
    Iof_GetAddrToAddrDes(input.byte() != 0 ? &address : nullptr, &descriptor);
    MoxResetDate date;
    input.take(&date, sizeof date);
    Drvboot_ResetTimeStamp(&date);
    MOX_PreRebootOS(input.byte(), input.byte() != 0 ? &date : nullptr);
}

void boxes(Input &input)
{
    const std::uint32_t size = input.word();
    MOX_GetBlackbox(Text(input), size);
    MOX_DestroyBlackbox(Text(input));
    const std::uint32_t length = input.below(64);
    Room<std::uint8_t> bytes(length);
    MOX_ReadBlackbox(-1, input.word(), length, bytes.get());
    MOX_WriteBlackbox(-1, input.word(), length, bytes.get());
    void *address = nullptr;
    MOX_GetRsvMemMmapAddr(Text(input), 0, &address);
}

void links(Input &input)
{
    const std::string words[] = {input.text(400), input.text(400), input.text(400), input.text(400)};
    const LinkFileDesc one = {words[0].c_str(), words[1].c_str(), words[2].c_str(), words[3].c_str(),
                              nullptr};
    const LinkEncapFileDesc encap = {input.word(), words[0].c_str(), words[1].c_str(), words[2].c_str(),
                                     words[3].c_str()};
    const Text root(input);
    DrvBoot_InstallBootFile(&one, 1, root);
    DrvBoot_Encap_InstallBootFile(&encap, static_cast<std::int32_t>(input.below(2)), root);
    DrvBoot_LinkFile(&encap, 0, root);
    Drvboot_ClearBiosFile(Text(input));
}

void handler(std::uint32_t) {}

void registrations(Input &input)
{
    MOX_Register_PreResetProcFunc(input.byte() != 0 ? handler : nullptr, Text(input, 12));
    Find_Repeat_Func(handler, Text(input, 12));
    Call_PreReset_Handle();
}

void board(Input &input)
{
    const auto questions = fuzz::board_questions();
    questions[input.below(static_cast<std::uint32_t>(questions.size()))](input);
}

void variables(Input &input)
{
    const auto questions = fuzz::variable_questions();
    questions[input.below(static_cast<std::uint32_t>(questions.size()))](input);
}

constexpr fuzz::Question all[] = {null_pointers, texts_and_room, bytes_and_room, numbers, records,
                                  boxes,         links,          registrations,  board,   variables};

// Nothing outside memory is touched.
int refuse(const char *)
{
    return -1;
}

int refuse_link(const char *, const char *)
{
    return -1;
}

int refuse_pipe(const char *, unsigned)
{
    return -1;
}

int refuse_size(int, long long)
{
    return -1;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    fuzz::drive(&input);
    fuzz::set_variables(fuzz::variables_of(&input));
    fuzz::replace("unlink", refuse);
    fuzz::replace("remove", refuse);
    fuzz::replace("symlink", refuse_link);
    fuzz::replace("mkfifo", refuse_pipe);
    fuzz::replace("ftruncate64", refuse_size);
    fuzz::run([&] {
        for (int i = 0; i < 12 && input.left() != 0; ++i)
            all[input.below(std::size(all))](input);
    });
    return 0;
}
