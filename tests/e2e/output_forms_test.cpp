// Every output form on one small hive, whole.

#include <gtest/gtest.h>

#include "e2e/e2e_support.h"

namespace {

using namespace test_support;

struct golden {
  const char* name;
  const char* hive;
  words arguments;
  const char* output;  ///< after an empty line: "{key}" is a heading, "$" marks a blank at the end
};

const golden goldens[] = {
    {"text, both keys", "keys.hiv", {}, R"(
{xp}
reg date   |  reg-UTC      | file mod   |  time-UTC     | xpupdate   |  time-UTC     | entry | order | file sz    | Path/file           $
2010-01-01 |  00:00:00.000 | 2005-06-07 |  08:09:10.000 | 2004-01-02 |  03:04:05.000 |     0 | 18446744073709551615 | 0x00012345 | C:\p.exe            $
2010-01-01 |  00:00:00.000 | 2006-07-08 |  09:10:11.500 | 2006-07-08 |  09:10:11.000 |     1 |     0 |            | C:\q;.exe           $


{new}
reg date   |  reg-UTC      | file mod   |  time-UTC     | entry | flags1     | flags2     | meaning (experimental)    | Path/file           $
2023-03-04 |  19:52:07.339 | 2014-03-05 |  13:07:09.123 |     0 | 0x0000000a | 0x00000100 | legacy-gui; exec; admin   | \??\C:\Old, new\a;b.exe
2023-03-04 |  19:52:07.339 |            |               |     1 | 0x00000001 | 0x00000012 |                           | C:\Ж
c.exe         $

)"},
    {"csv, all control sets", "sets.hiv", {"-csv", "-all_controlsets"}, R"(

{set1}
reg date, reg-UTC,file mod, time-UTC,entry,flags1,flags2,meaning (experimental),Path/file
2023-03-04, 19:52:07.339,2014-03-05, 13:07:09.123,0,0x0000000a,0x00000100,legacy-gui; exec; admin,\??\C:\Old  new\a|b.exe
2023-03-04, 19:52:07.339,, ,1,0x00000001,0x00000012,,C:\Ж[LF]c.exe


{set2}
reg date, reg-UTC,file mod, time-UTC,xpupdate, time-UTC,entry,order,file sz,Path/file
2010-01-01, 00:00:00.000,2005-06-07, 08:09:10.000,2004-01-02, 03:04:05.000,0,18446744073709551615,0x00012345,C:\p.exe
2010-01-01, 00:00:00.000,2006-07-08, 09:10:11.500,2006-07-08, 09:10:11.000,1,0,,C:\q|.exe

)"},
    {"csvl2t",
     "sets.hiv",
     {"-csvl2t", "-all_controlsets", "-hostname", "PC 1", "-username", "me", "-alias",
      "Sets.hiv|Case 7"},
     R"(
date,time,timezone,MACB,source,sourcetype,type,user,host,short,desc,version,filename,inode,notes,format,extra
2014-03-05, 13:07:09.000,UTC,M...,REG,Shim Cache [ControlSet001 - CurrentControlSet],File Modified,me,PC 1,\??\C:\Old  new\a|b.exe,\??\C:\Old  new\a|b.exe,2,Case 7,0x00000000,Flags1: 0x0000000a; Flags2: 0x00000100; [legacy-gui; exec; admin],ovrik (lorvane),entry# 0
2004-01-02, 03:04:05.000,UTC,..C.,REG,Shim Cache [ControlSet002],RegKey Updated,me,PC 1,C:\p.exe,C:\p.exe (sorted# -1),2,Case 7,0x00000000,File size: 0x00012345,ovrik (lorvane),entry# 0
2005-06-07, 08:09:10.000,UTC,M...,REG,Shim Cache [ControlSet002],File Modified,me,PC 1,C:\p.exe,C:\p.exe (sorted# -1),2,Case 7,0x00000000,File size: 0x00012345,ovrik (lorvane),entry# 0
2006-07-08, 09:10:11.000,UTC,M.C.,REG,Shim Cache [ControlSet002],File Modified; RegKey Updated,me,PC 1,C:\q|.exe,C:\q|.exe (sorted# 0),2,Case 7,0x00000000,,ovrik (lorvane),entry# 1
)"},
    {"bodyfile", "sets.hiv", {"-bodyfile", "-all_controlsets"}, R"(

{set1}
md5|name|inode|mode as string|uid|gid|size|access time|modify time|mft time|create time
0|entry# 0; \??\C:\Old, new\a;b.exe (Shim Cache [ControlSet001 - CurrentControlSet])|0||0|0|0|0|1394024829|0|0
0|entry# 1; C:\Ж
c.exe (Shim Cache [ControlSet001 - CurrentControlSet])|0||0|0|0|0|0|0|0

{set2}
0|entry# 0; C:\p.exe (sorted# -1) (Shim Cache [ControlSet002])|0||0|0|74565|0|1118131750|1073012645|0
0|entry# 1; C:\q;.exe (sorted# 0) (Shim Cache [ControlSet002])|0||0|0|0|0|1152349811|1152349811|0
)"},
    {"multiline", "sets.hiv", {"-multiline"}, R"(

{new}
reg date:               2023-03-04              $
reg-UTC:                 19:52:07.339            $
file mod:               2014-03-05              $
time-UTC:                13:07:09.123            $
entry:                                         0
flags1:                 0x000000000000000000000a
flags2:                 0x0000000000000000000100
meaning (experimental): legacy-gui; exec; admin $
Path/file:              \??\C:\Old, new\a|b.exe $

reg date:               2023-03-04              $
reg-UTC:                 19:52:07.339            $
file mod:                                       $
time-UTC:                                        $
entry:                                         1
flags1:                 0x0000000000000000000001
flags2:                 0x0000000000000000000012
meaning (experimental):                         $
Path/file:              C:\Ж
c.exe             $


)"},
    {"csvgen", "sets.hiv", {"-csvgen", "-pair_datetime"}, R"(

{new}
 reg date [UTC],file modify [UTC],entry,flags1,flags2,meaning (experimental),Path/file
 2023-03-04 19:52:07.339, 2014-03-05 13:07:09.123,0,0x0000000a,0x00000100,legacy-gui; exec; admin,\??\C:\Old  new\a|b.exe
 2023-03-04 19:52:07.339,  ,1,0x00000001,0x00000012,,C:\Ж[LF]c.exe

)"},
    {"csv, date and time in one field", "sets.hiv", {"-csv", "-pair_datetime"}, R"(

{new}
 reg date [UTC]         ,file modify [UTC]      ,entry,flags1    ,flags2    ,meaning (experimental)   ,Path/file           $
 2023-03-04 19:52:07.339, 2014-03-05 13:07:09.123,    0,0x0000000a,0x00000100,legacy-gui; exec; admin  ,\??\C:\Old  new\a|b.exe
 2023-03-04 19:52:07.339,                        ,    1,0x00000001,0x00000012,                         ,C:\Ж[LF]c.exe      $

)"},
    {"xml", "sets.hiv", {"-xml"}, R"(

{new}
reg date   reg-UTC     file mod   time-UTC    entryflags1    flags2    meaning (experimental)   Path/file           $
2023-03-04 19:52:07.3392014-03-05 13:07:09.123    00x0000000a0x00000100legacy-gui; exec; admin  \??\C:\Old, new\a|b.exe
2023-03-04 19:52:07.339                           10x000000010x00000012                         C:\Ж
c.exe         $

)"},
    {"xml beside csvgen, which stays set", "sets.hiv", {"-xml", "-csvgen"}, R"(

{new}
reg date reg-UTCfile mod time-UTCentryflags1flags2meaning (experimental)Path/file
2023-03-04 19:52:07.3392014-03-05 13:07:09.12300x0000000a0x00000100legacy-gui; exec; admin\??\C:\Old, new\a|b.exe
2023-03-04 19:52:07.339 10x000000010x00000012C:\Ж[LF]c.exe

)"},
    {"quoted",
     "sets.hiv",
     {"-enable_quoted_csv_fields", "-hostname", "", "-csv_separator", " | "},
     R"(

{new}
reg date  |reg-UTC     |file mod  |time-UTC    |entry|flags1    |flags2    |meaning (experimental)   |Path/file           $
2023-03-04|19:52:07.339|2014-03-05|13:07:09.123|    0|0x0000000a|0x00000100|"legacy-gui; exec; admin"|"\??\C:\Old, new\a|b.exe"
2023-03-04|19:52:07.339|          |            |    1|0x00000001|0x00000012|""                       |"C:\Ж
c.exe"       $

)"},
    {"tab, formats",
     "sets.hiv",
     {"-csv_separator", "TAB", "-dateformat", "DD/MM/YY", "-timeformat", "hh:mm:ss.xxxxxxx"},
     "\n\n{new}\n"
     "reg date  \t reg-UTC     \tfile mod  \t time-UTC    \tentry\tflags1    \tflags2    \t"
     "meaning (experimental)   \tPath/file           $\n"
     "04/03/2023\t 19:52:07.3391250\t05/03/2014\t 13:07:09.1234567\t    0\t0x0000000a\t0x00000100\t"
     "legacy-gui; exec; admin  \t\\??\\C:\\Old, new\\a|b.exe\n"
     "04/03/2023\t 19:52:07.3391250\t          \t             \t    1\t0x00000001\t0x00000012\t"
     "                         \tC:\\Ж\nc.exe         $\n\n"},
    {"no whitespace, further columns",
     "sets.hiv",
     {"-no_whitespace", "-timeformat", "hh:mm:ss", "-base10", "-hostname", "H", "-inc_slack",
      "-sort_by_name"},
     R"(

{new}
reg date|reg-UTC|file mod|time-UTC|entry|flags1|flags2|meaning (experimental)|slack|hostname|Path/file
2023-03-04|19:52:07|2014-03-05|13:07:09|0|10|256|legacy-gui; exec; admin||H|\??\C:\Old, new\a;b.exe
2023-03-04|19:52:07|||1|1|18|||H|C:\Ж
c.exe

)"},
};

void replace_all(std::string& text, std::string_view from, std::string_view to) {
  for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
}

/// The heading and the empty line behind it.
std::string heading(const std::string& title, const std::string& set, const std::string& key) {
  const std::string rule = std::string(105, '-') + " \n";
  return rule + "Artifact: " + title + "\nRegistry key: HKLM\\System\\" + set +
         "\\Control\\Session Manager\\" + key + "\\AppCompatCache [enumvalues]\n" + rule + "\n";
}

std::string expected(const golden& row) {
  std::string text = row.output;
  replace_all(text, " $\n", " \n");
  const std::string current = "CurrentControlSet";
  replace_all(text, "{xp}\n", heading("WinXP Shim Cache", current, "AppCompatibility"));
  replace_all(text, "{new}\n", heading("Shim Cache", current, "AppCompatCache"));
  replace_all(
      text, "{set1}\n",
      heading("Shim Cache [ControlSet001 - CurrentControlSet]", "ControlSet001", "AppCompatCache"));
  replace_all(text, "{set2}\n",
              heading("Shim Cache [ControlSet002]", "ControlSet002", "AppCompatibility"));
  return text.substr(1);
}

class output_forms : public single_source {};

TEST_F(output_forms, are_the_same_everywhere) {
  put_file("keys.hiv", two_cache_hive(1));
  for (const golden& row : goldens) {
    words arguments = row.arguments;
    arguments.insert(arguments.end(), {"-hive", row.hive});
    for (const char* language : {"C", "tr_TR.UTF-8"}) {
      const run_result result =
          run(arguments, {.environment = {{"TZ", "Pacific/Apia"}, {"LC_ALL", language}}});
      EXPECT_EQ(expected(row), body_of(result.out)) << row.name;
      EXPECT_EQ("", result.err) << row.name;
      EXPECT_EQ(0, result.exit_status) << row.name;
    }
  }
}

}  // namespace
