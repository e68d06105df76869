// The published category and window-factory names.
#include "orvane/log.h"

const char* const kKfBuildCategory = "Log_Build";
const char* const kKfBuildFactory = "WIN_BUILD";
const char* const kKfFindInFilesCategory = "Log_Find_in_Files";
const char* const kKfFindInFilesFactory = "WIN_FIND_IN_FILES";
const char* const kKfToolOutputCategory = "Log_Tool_Output";
const char* const kKfToolOutputFactory = "WIN_TOOL_OUTPUT";
const char* const kKfDebugLogCategory = "Log_Debug";
const char* const kKfDebugLogFactory = "WIN_DEBUG_LOG";
const char* const kKfFindAllRefCategory = "Log_Find_All_Ref";
const char* const kKfFindAllRefFactory = "WIN_FIND_ALL_REFERENCES";
const char* const kKfFindAllDeclCategory = "Log_Find_All_Decl";
const char* const kKfFindAllDeclFactory = "WIN_FIND_ALL_DECLARATIONS";
const char* const kKfShowAmbiguousDefCategory = "Log_Sel_Ambig_Def";
const char* const kKfShowAmbiguousDefFactory = "WIN_SELECT_AMBIGUOUS_DEFINITIONS";
const char* const kSourceBrowseAgentLogCategory = "Log_SourceBrowse";
const char* const kKfCMakeCMSISLogCategory = "Log_CMake_CMSIS";
const char* const kKfCMakeCMSISLogFactory = "WIN_CMAKE_CMSIS_LOG";
const char* const kKfFrameworkLogCategory = "Log_Framework";

// The source-browse log's window factory is used by the IDE alone and is not
// exported.
extern const char* const kSourceBrowseAgentLogFactory;
const char* const kSourceBrowseAgentLogFactory = "WIN_SOURCEBROWSE_LOG";
