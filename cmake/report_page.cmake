# cmake -DFOLDER=... -DOUT=... -P report_page.cmake: writes FOLDER/page.html with its style and script
# as the initializer of a string. A policy in the page allows these two and nothing else.

# The SHA-256 of `text` in base64, as a content security policy has it.
function(base64_hash text out)
  set(letters ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/)
  string(SHA256 hex "${text}")
  set(hash "")
  foreach(at RANGE 0 60 6) # 6 digits give 4 letters; the last 4 are filled up with zeros
    string(SUBSTRING "${hex}00" ${at} 6 digits)
    foreach(shift 18 12 6 0)
      math(EXPR index "(0x${digits} >> ${shift}) & 63")
      string(SUBSTRING ${letters} ${index} 1 letter)
      string(APPEND hash ${letter})
    endforeach()
  endforeach()
  string(SUBSTRING ${hash} 0 43 hash)
  set(${out} "${hash}=" PARENT_SCOPE)
endfunction()

foreach(file page.html style.css script.js)
  file(READ ${FOLDER}/${file} ${file})
endforeach()
base64_hash("${style.css}" style)
base64_hash("${script.js}" script)
set(policy "default-src 'none'; style-src 'sha256-${style}'; script-src 'sha256-${script}'; base-uri 'none'; form-action 'none'")
set(page "${page.html}")
string(REPLACE "<!--policy-->" "<meta http-equiv=\"Content-Security-Policy\" content=\"${policy}\">" page "${page}")
string(REPLACE "<link rel=\"stylesheet\" href=\"style.css\">" "<style>${style.css}</style>" page "${page}")
string(REPLACE "<script src=\"script.js\"></script>" "<script>${script.js}</script>" page "${page}")
string(REPLACE "<script src=\"sample.js\"></script>\n" "" page "${page}")
file(WRITE ${OUT} "R\"page(${page})page\"\n")
