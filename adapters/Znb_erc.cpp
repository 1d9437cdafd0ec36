#include "adapters/Znb_erc.h"

#include "platform/DynLib.h"

namespace {

struct TErrorText {
    int32_t Code;
    const char* Text;
};

// Spellings ("occured", "Connnections") are the messages adapters and the console already show.
constexpr TErrorText kErrorTexts[] = {
    {0, "Operation OK"},
    {40002, "Add Notice Board Entry Not Defined for Duskmere Server."},
    {40003, "Main NoticeBoard Process Busy"},
    {40004, "Could not find the required Notice to acknowledge"},
    {40005, "Error Saving Configuration Details to Ini File"},
    {40008, "An Error occured Setting Configuration Details"},
    {40105, "Duskmere NoticeBoard Process Busy"},
    {40106, "Duskmere Command Get_Names Failed"},
    {40107, "Duskmere Server has been shut down"},
    {40108, "Duskmere Command Get_Agents Failed"},
    {41003, "R/Vista no Connnections have been made"},
    {41004, "R/Vista NoticeBoard Process Busy"},
    {41008, "Received an empty NB entry from R/Vista Server"},
    {43000, "One or more of the Adapter Functions was not found."},
    {44000, "Could not Create Object"},
    {44001, "Could not create SESSION List"},
    {44002, "Exception converting string to integer"},
    {47000, "Command Pipe not open"},
    {47001, "An Error occured whilst trying to write to a named pipe"},
    {47002, "An Error occurred whilst reading from a list"},
    {47003, "An Error occurred whilst adding item to list"},
};

} // namespace

std::string Get_ZNB_Error_Message(int32_t code) {
    for (const TErrorText& e : kErrorTexts)
        if (e.Code == code) return e.Text;
    return SysErrorMessage(code);
}
