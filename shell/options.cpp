#include "shell/options.h"

#include "shell/message.h"
#include "shell/process.h"
#include "shell/resource.h"

const int OPT_keyed_ids[] = {57,  3,   73, 48, 41, 39, 55, 94, 63,  106, 112, 113, 114, 6,  72,
                             111, 82,  76, 64, 80, 47, 40, 58, 78,  60,  84,  110, 96,  98, 105,
                             89,  88,  85, 86, 44, 69, 37, 35, 51,  27,  28,  13,  23,  17, 22,
                             31,  108, 10, 11, 15, 20, 8,  46, 102, 59,  2,   53,  0};
const int OPT_positional_ids[] = {50, 0};

namespace {
struct OptionRow {
    int id;
    OptionSpec spec;
    const char *form; // as the help shows it
    const char *help;
    bool domain = false;        // the form stands alone, and kDomainHelp explains it
    const char *more = nullptr; // last line of the help
};

constexpr const char *kDomainHelp =
    "               region=predefined region:\n"
    "                  us,ne,at,se,mw,sp,nw,sw,etc\n"
    "               proj=projection, clat=central latitude, clon=central longitude,\n"
    "               nx,ny=number of gridpoints and dx,dy=grid spacing\n";
constexpr const char *kRegionLine = "               us,ne,at,se,mw,sp,nw,sw,var\n";
constexpr const char *kLevelLine =
    "               none,print,error,warn,mess,out1,*out2,out3,out4,debug\n";

/* In the order of the ids.  The ids that this program does not take belong to its sisters, which
 * share the defaults files. */
constexpr OptionRow kRows[] = {
    {2, {"background", "qraback", "bg", 0, OPT_STR}, "-bg clr", "Background color"},
    {3, {"batch", "qrabatch", "ba", 0, OPT_BATCH}, "-ba", "Run program in batch mode"},
    {5, {"bull_file", "qrabullfile", "bf", 0, OPT_STR}, "-bf file", "Bulletin file name"},
    {6, {"city_file", "qracity", "cf", 0, OPT_STR}, "-cf file", "City database file name"},
    {8, {"color_clabel", "qraclrclab", "cocl", 0, OPT_STR}, "-cocl clr", "Fill label color"},
    {9, {"color_cloud", "qraclrcloud", "cocd", 0, OPT_STR}, "-cocd clr", "Cloud color"},
    {10, {"color_cmap", "qraclrcmap", "cocm", 0, OPT_STR}, "-cocm clr", "Fill map color"},
    {11, {"color_cont", "qraclrcont", "coco", 0, OPT_STR}, "-coco clr", "Line contour color"},
    {13, {"color_data", "qraclrdata", "cod", 0, OPT_STR}, "-cod clr", "Data plotting color"},
    {15, {"color_fill", "qraclrfill", "cof", 0, OPT_STR}, "-cof clr[,...]", "Fill contour colors"},
    {16, {"color_front", "qraclrfront", "cofr", 0, OPT_STR}, "-cofr clr", "Front color"},
    {17, {"color_grid", "qraclrgrid", "cogr", 0, OPT_STR}, "-cogr clr", "grid color"},
    {18, {"color_hodo", "qraclrhodo", "coh", 0, OPT_STR}, "-coh clr", "Hodograph color"},
    {19, {"color_hodtxt", "qraclrhodtxt", "coht", 0, OPT_STR}, "-coht clr", "Hodograph text color"},
    {20, {"color_label", "qraclrlab", "cola", 0, OPT_STR}, "-cola clr", "Line label color"},
    {22, {"color_line", "qraclrln", "coln", 0, OPT_STR}, "-coln clr", "Lat-lon line color"},
    {23, {"color_map", "qraclrmap", "com", 0, OPT_STR}, "-com clr", "line map color"},
    {24, {"color_pop", "qraclrpop", "copp", 0, OPT_STR}, "-copp clr", "Probability color"},
    {26, {"color_sound", "qraclrsound", "cosd", 0, OPT_STR}, "-cosd clr", "Sounding color"},
    {27, {"color_table", "qraclrtbl", "ct", 0, OPT_STR}, "-ct file", "Color table file name"},
    {28, {"color_text", "qraclrtext", "cot", 0, OPT_STR}, "-cot clr", "Text color"},
    {29,
     {"color_therm", "qraclrtherm", "coth", 0, OPT_STR},
     "-coth clr",
     "Thermodynamic line color"},
    {30,
     {"color_thrmtxt", "qraclrthrmtxt", "cott", 0, OPT_STR},
     "-cott clr",
     "Thermodynamic text color"},
    {31, {"color_wind", "qraclrwind", "cowd", 0, OPT_STR}, "-cowd clr", "Wind barb colors"},
    {32, {"color_wx", "qraclrwx", "cowx", 0, OPT_STR}, "-cowx clr", "Weather symbol color"},
    {33, {"command", "qracommand", nullptr, 10, OPT_LIST}, "command", "Command"},
    {34, {"command", "qracommand", "cd", 0, OPT_STR}, "-cd command", "Command"},
    {35,
     {"con_base", "qraconbase", "cb", 0, OPT_FLOAT},
     "-cb base",
     "Color fill contour/vector base value"},
    {37, {"con_interval", "qraconint", "in", 0, OPT_FLOAT}, "-in intrvl", "Contour interval"},
    {39, {"con_path", "qracon", "cp", 0, OPT_PATH}, "-cp path", "Converted data path"},
    {40, {"current", "qracurrent", "cu", 0, OPT_CURRENT}, "-cu [hour]", "Use current data file"},
    {41, {"data_path", "qradata", "dp", 0, OPT_PATH}, "-dp path", "Raw data path"},
    {44,
     {"draw", "qradraw", "dr", 0, OPT_DRAW},
     "-dr param[,...]",
     "Draw components: text,data,sum,map,none"},
    {45, {"decode_hour", "qradecodehour", "dh", 0, OPT_STR}, "-dh hour", "Hour to be decoded"},
    {46,
     {"device", "qradevice", "de", 0, OPT_DEVICE},
     "-de dev[,name]",
     "Output device: d,p,q,w,m"},
    {47,
     {"file_param", "qrafileparam", "pf", 0, OPT_FILEPARAM},
     "-pf param",
     "File parameters: use,calc,over,app"},
    {48, {"file_path", "qrafile", "fp", 0, OPT_PATH}, "-fp path", "File path"},
    {49, {"filename", "qrafilename", nullptr, 1, OPT_STR}, "file", "Input file name"},
    {50, {"filename", "qrafilename", nullptr, 10, OPT_LIST}, "file [file...]", "Input file names"},
    {51, {"font_list", "qrafontlist", "fl", 0, OPT_STR}, "-fl list", "List of fonts to use"},
    {52, {"forecast", "qraforecast", "fc", 0, OPT_STR}, "-fc hour", "Forecast time"},
    {53, {"geometry", "qrageometry", "ge", 0, OPT_STR}, "-ge wxh+x+y", "Window geometry"},
    {54, {"grid_num", "qragridnum", "gn", 0, OPT_STR}, "-gn num", "Grid number"},
    {55, {"grid_path", "qragrid", "gp", 0, OPT_PATH}, "-gp path", "Gridded data path"},
    {56, {"grid_type", "qragridtype", "gt", 0, OPT_STR}, "-gt type", "Grid type"},
    {57, {"help", "qrahelp", "h", 0, OPT_HELP}, "-h", "Print this help"},
    {58, {"hour", "qrahour", "ho", 0, OPT_HOUR}, "-ho hour", "Actual hour of the file"},
    {59, {"icon", "qraicon", "ic", 0, OPT_BOOL}, "-ic", "Open window iconified"},
    {60, {"identifier", "qraident", "id", 0, OPT_STR}, "-id ident", "Specific station identifier"},
    {63, {"image_path", "qraimage", "ip", 0, OPT_STR}, "-ip path", "Image file path"},
    {64, {"in_file", "qrainfile", "if", 0, OPT_STR}, "-if type", "Input data file type"},
    {65, {"in_file", "qrainfile", "if", 0, OPT_STR}, "-if type", "Input data file type"},
    {67, {"ingestor", "qraingestor", "di", 0, OPT_INGESTOR}, "-di type", "Ingestor type"},
    {68, {"input", "qrain", "in", 0, OPT_STR}, "-in type", "Type of input"},
    {69, {"label", "qralabel", "la", 0, OPT_STR}, "-la label", "Plot labels"},
    {71, {"level", "qralevel", "le", 0, OPT_STR}, "-le level", "Vertical level"},
    {72, {"map_file", "qramap", "mf", 0, OPT_STR}, "-mf file[,file]", "Map database files"},
    {73,
     {"message", "qramess", "me", 0, OPT_MESSAGE},
     "-me level",
     "Message level to be displayed: none,print,error,warn,mess,out1,*out2,out3,out4,debug",
     false,
     kLevelLine},
    {74, {"model", "qramodel", "mo", 0, OPT_STR}, "-mo model", "Model name"},
    {76,
     {"name_conv", "qranameconv", "nc", 0, OPT_NAMECONV},
     "-nc type",
     "Naming convention file name"},
    {78,
     {"num_hour", "qranumhour", "nh", 0, OPT_STR},
     "-nh hour[,step]",
     "Number of hours to view"},
    {79,
     {"object_param", "qraobjectparam", "oa", 0, OPT_STR},
     "-oa param",
     "Objective analysis parameters"},
    {80, {"out_file", "qraoutfile", "of", 0, OPT_STR}, "-of type", "Output file type"},
    {82, {"output", "qraout", "ou", 0, OPT_STR}, "-ou type", "Type of output"},
    {83, {"parameter", "qraparameter", "pa", 0, OPT_STR}, "-pa param", "Parameter"},
    {84,
     {"plot_domain", "qradomain", "pd", 0, OPT_DOMAIN},
     "-pd region or [proj],clat,clon[,nx,ny][,dx,dy]",
     "Output plot domain",
     true},
    {85, {"plot_format", "qraformat", "fm", 0, OPT_STR}, "-fm format", "Numeric format"},
    {86, {"plot_param", "qrapltparam", "pp", 0, OPT_STR}, "-pp param", "Plot parameters"},
    {88,
     {"plot_scale", "qrascale", "sc", 0, OPT_FLOAT},
     "-sc scale",
     "Text and wind vector scale factor"},
    {89,
     {"plot_type", "qraplot", "pl", 0, OPT_PLOTTYPE},
     "-pl type",
     "Plot type: cf,lcf,ln,dln,ndln,value,none"},
    {92, {"product", "qraproduct", "ph", 0, OPT_STR}, "-ph product", "Product"},
    {94, {"raw_path", "qraraw", "rp", 0, OPT_PATH}, "-rp path", "Raw files path"},
    {96,
     {"region", "qraregion", "re", 0, OPT_REGION},
     "-re region or [proj],clat,clon[,nx,ny][,dx,dy]",
     "Region to be used for plotting and gridding",
     true,
     kRegionLine},
    {98,
     {"stat_prior", "qraprior", "pr", 0, OPT_INT},
     "-pr prior",
     "Priority of stations used in the plot"},
    {99, {"state", "qrastate", "st", 0, OPT_STR}, "-st state", "State"},
    {100, {"table", "qratable", "ta", 0, OPT_STR}, "-ta table", "Table name"},
    {101, {"time", "qratime", "ft", 0, OPT_STR}, "-ft time", "Forecast time"},
    {102, {"title", "qratitle", "ti", 0, OPT_STR}, "-ti title", "Window title"},
    {104, {"value", "qravalue", nullptr, 10, OPT_LIST}, "value", "Value"},
    {105,
     {"variable", "qravar", "va", 0, OPT_STR},
     "-va var",
     "Variable to be plotted or contoured"},
    {106, {"watch_path", "qrawatch", "wp", 0, OPT_PATH}, "-wp path", "Watch file data path"},
    {107, {"window_num", "qrawindownum", "wn", 0, OPT_STR}, "-wn num", "Window number"},
    {108,
     {"color_watch", "qraclrwatch", "cowa", 0, OPT_STR},
     "-cowa sclr,tclr",
     "Watch box colors"},
    {109, {"log_file", "qralogfile", "lf", 0, OPT_STR}, "-lf file", "Log file name"},
    {110,
     {"grid_domain", "qragrddomain", "gd", 0, OPT_DOMAIN},
     "-gd region or [proj],clat,clon[,nx,ny][,dx,dy]",
     "Grid domain",
     true},
    {111, {"input", "qrain", "inp", 0, OPT_STR}, "-in type", "Type of input"},
    {112, {"text_path", "qratext", "tp", 0, OPT_PATH}, "-tp path", "Text file path"},
    {113, {"model_path", "qrampath", "mp", 0, OPT_PATH}, "-mp path", "Model file path"},
    {114, {"sat_path", "qrasat", "sp", 0, OPT_PATH}, "-sp path", "Satellite file path"},
};

const OptionRow *find(int id) {
    for (const OptionRow &row : kRows)
        if (row.id == id)
            return &row;
    return nullptr;
}

void add_rows(const int *ids, std::vector<OptionSpec> *table) {
    for (; *ids; ids++)
        OPT_describe(&table->emplace_back(), *ids);
}

void print_all(const int *ids) {
    for (; *ids; ids++)
        OPT_print_help(*ids);
}
} // namespace

void OPT_describe(OptionSpec *row, int id) {
    const OptionRow *found = find(id);
    if (found) {
        *row = found->spec;
        return;
    }
    *row = {"", "", nullptr, 0, OPT_STR};
    MSG_print(MSG_PRINT, "%d\n", id);
}

std::vector<OptionSpec> OPT_table(const int *keyed, const int *positional) {
    std::vector<OptionSpec> table;
    add_rows(keyed, &table);
    add_rows(positional, &table);
    return table;
}

OptionHelp OPT_help(int id) {
    const OptionRow *row = find(id);
    return row ? OptionHelp{row->form, row->help} : OptionHelp{"", ""};
}

void OPT_print_help(int id) {
    const OptionRow *row = find(id);
    if (!row)
        return;
    if (row->domain)
        MSG_print(MSG_PRINT, " %-10s\n", row->form);
    MSG_print(MSG_PRINT, " %-10s  %s\n", row->domain ? "" : row->form, row->help);
    if (row->domain)
        MSG_text(MSG_PRINT, kDomainHelp);
    if (row->more)
        MSG_text(MSG_PRINT, row->more);
}

void OPT_usage(const char *program, const int *keyed, const int *positional) {
    MSG_print(MSG_PRINT, "%s syntax (version:%s)\n", program, VER_string());
    MSG_print(MSG_PRINT, "   %s [options...]\n", program);
    MSG_print(MSG_PRINT, "Keyed options...\n");
    MSG_print(MSG_PRINT, " %-10s  Resource/defaults file name\n", "-df file");
    MSG_print(MSG_PRINT, " %-10s  Program name\n", "-na name");
    print_all(keyed);
    MSG_print(MSG_PRINT, "Positional options...\n");
    print_all(positional);
}
