// SPDX-License-Identifier: MIT
#include "hosts/results/report/report_style.h"

#include "hosts/results/report/html.h"

namespace velmora {

namespace {

constexpr const char* kStyle = R"(
:root{--ink:#1d2b33;--soft:#5b6b74;--line:#d9e1e5;--pale:#f4f7f8;--accent:#176b5b;--map:180px;--outline:.8px}
*{box-sizing:border-box}
body{margin:0;font:15px/1.5 "Segoe UI","DejaVu Sans",Arial,sans-serif;color:var(--ink);background:#fff}
header{background:var(--accent);color:#fff;padding:22px 32px}
header h1{margin:0;font-size:24px}
header p{margin:4px 0 0;opacity:.92}
main{max-width:1240px;margin:0 auto;padding:8px 32px 60px}
nav{padding:10px 32px;border-bottom:1px solid var(--line);background:var(--pale)}
nav a{margin-right:18px;color:var(--accent);text-decoration:none;white-space:nowrap}
h2{margin:34px 0 8px;font-size:20px;border-bottom:2px solid var(--accent);padding-bottom:3px}
h3{margin:22px 0 4px;font-size:16px}
p{margin:6px 0}
.note{color:var(--soft);font-size:13.5px;max-width:900px}
table{border-collapse:collapse;margin:8px 0;font-size:13.5px}
th,td{padding:3px 12px 3px 0;text-align:left;border-bottom:1px solid var(--line);vertical-align:top}
th{color:var(--soft);font-weight:600}
.n{text-align:right;font-variant-numeric:tabular-nums}
td.n,td:first-child{white-space:nowrap}
.path,code{overflow-wrap:anywhere}
.message{display:block}
.two td:not(:last-child),.tight td:not(:last-child){white-space:nowrap}
.maps{display:flex;flex-wrap:wrap;gap:12px;margin:8px 0}
.maps figure{margin:0;width:var(--map)}
.map{position:relative}
.map svg.over{position:absolute;left:0;top:0;width:100%;height:100%;overflow:hidden}
.bar{display:flex;align-items:center;gap:8px;font-size:13px}
.bar i{height:6px;border:1px solid var(--ink);border-top:0}
.maps img{width:100%;display:block;border:1px solid var(--line)}
.maps figcaption{font-size:13px;color:var(--soft)}
.maps figcaption b{color:var(--ink)}
.ramp{display:flex;align-items:center;gap:8px;font-size:13.5px}
.ramp i{width:220px;height:14px;border:1px solid var(--line)}
.charts{display:flex;flex-wrap:wrap;gap:14px}
svg.chart{width:380px;border:1px solid var(--line);background:#fff}
svg.stations{max-width:820px;width:100%;background:var(--pale);border:1px solid var(--line)}
svg text{font:11px "DejaVu Sans",Arial,sans-serif;fill:var(--ink)}
svg text.title{font-size:13px;font-weight:600}
svg text.axis{fill:var(--soft)}
svg text.station{font-size:11px;paint-order:stroke;stroke:#fff;stroke-width:2.5px}
svg circle.station{fill:#c0392b;stroke:#fff;stroke-width:1.4}
svg .zone{fill:none;stroke:#20343d;stroke-width:1.2}
svg .grid{stroke:var(--line)}
.legend span{display:inline-block;margin-right:18px;font-size:13.5px}
.legend i{display:inline-block;width:14px;height:4px;margin-right:6px;vertical-align:middle}
.legend i.box{height:12px;border:1px solid var(--line)}
.error{color:#a61b1b}.warning{color:#8a5a00}
details{margin:4px 0}summary{cursor:pointer;color:var(--accent)}
summary h3{display:inline-block;margin:10px 0 2px}
.scroll{overflow-x:auto}
.paper{display:none}
.banner{border:3px solid #a61b1b;background:#fdeeee;color:#7d1010;padding:8px 20px;margin:16px 0}
.banner h2{margin:4px 0;border:0;color:#a61b1b}
)";

// On paper all is open and small, and of the published figures those alone stand that are not met.
constexpr const char* kPaper = R"(
@media print{:root{--map:93px;--outline:.4px}.wide{--map:134px}
body{font-size:12px;line-height:1.35}
header{padding:12px 16px}header h1{font-size:20px}
nav{padding:6px 0;background:none}nav a{margin-right:10px}
main{max-width:none;padding:0}
h2{margin:18px 0 5px;font-size:16px}h3{margin:10px 0 2px;font-size:12.5px}
p{margin:3px 0}ul{margin:3px 0}
.note,.legend span,.ramp,.bar,.maps figcaption{font-size:10px}.maps figcaption{padding-top:3px;line-height:1.2}
table{font-size:10px;line-height:1.25;margin:4px 0}details table,.two table{font-size:9px}
th,td{padding:1px 6px 1px 0}td.n,.figures td:first-child{white-space:normal}
code{font-size:7.5px;white-space:nowrap}
.maps{gap:6px 8px}.ramp i{width:160px;height:9px}
.charts{gap:8px}svg.chart{width:calc(50% - 4px)}svg.stations{max-width:560px}
summary{list-style:none;font-weight:600}summary::-webkit-details-marker{display:none}
summary h3{margin:6px 0 0;color:var(--ink)}
.two{columns:2;column-gap:18px}.two table{margin-top:0}
.message{display:inline}.message:not(:first-child)::before{content:"\00b7\00a0"}
.paper{display:block}
.figures :is(th,td):last-child{text-align:left}
.figures:not(:has(.departs)),.figures tbody tr:not(:has(.departs)){display:none}
header,.ramp i,.legend i,.banner{print-color-adjust:exact;-webkit-print-color-adjust:exact}
.scroll{overflow:visible}h2,h3,summary,.ramp,.bar,.legend{break-after:avoid}
figure,svg,tr,.product{break-inside:avoid}
thead{display:table-header-group}
details::details-content{content-visibility:visible;block-size:auto}}
)";

std::string marginText(const char* place, const std::string& content) {
    return std::string("@") + place + "{content:" + content + ";font:9px sans-serif;color:#5b6b74}";
}

}  // namespace

std::string reportStyle(const std::string& heading, const std::string& foot) {
    return kStyle +
           ("@page{margin:16mm 12mm;" + marginText("top-left", '"' + styleText(heading) + '"') +
            marginText("bottom-left", '"' + styleText(foot) + '"')) +
           marginText("bottom-right", "\"Page \" counter(page) \" of \" counter(pages)") + "}" +
           kPaper;
}

}  // namespace velmora
