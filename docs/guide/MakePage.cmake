# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# cmake -DCMARK=program -DPAGE=page.md -DHTML=page.html -P MakePage.cmake
#
# Turns one page of the guide into HTML: the first heading becomes the title, links to other pages
# follow them to their HTML, and every page has the same way around. The paragraph that leads to the
# page of all pictures, which isn't installed, is left out.
execute_process(COMMAND ${CMARK} --extension table ${PAGE}
    OUTPUT_VARIABLE body COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCH "<h1>([^\n]*)</h1>" heading "${body}")
set(title "${CMAKE_MATCH_1}")
string(REGEX REPLACE "<p><a href=\"window-pictures\\.md\"[^\n]*</p>\n" "" body "${body}")
string(REGEX REPLACE "href=\"([a-z-]+)\\.md([\"#])" "href=\"\\1.html\\2" body "${body}")

set(around "")
foreach(entry "index:First steps" "window:The window" "command-line:The command line"
        "numbers:What the numbers mean" "limits:Formats and limits")
    string(REGEX REPLACE ":.*" "" file "${entry}")
    string(REGEX REPLACE ".*:" "" text "${entry}")
    set(here "")
    if(HTML MATCHES "/${file}\\.html$")
        set(here " aria-current=\"page\"")
    endif()
    string(APPEND around "<a href=\"${file}.html\"${here}>${text}</a>\n")
endforeach()
file(WRITE ${HTML} "<!DOCTYPE html>
<html lang=\"en\">
<head>
<meta charset=\"utf-8\">
<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">
<title>${title} - Tactus</title>
<link rel=\"stylesheet\" href=\"guide.css\">
</head>
<body>
<nav aria-label=\"Pages of the guide\">
${around}</nav>
<main>
${body}</main>
</body>
</html>
")
