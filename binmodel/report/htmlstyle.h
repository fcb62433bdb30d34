#pragma once

namespace MCBinModel {

// The look of a report: light or dark as the reader's system is, light on paper.
constexpr const char* kHtmlStyle = R"css(
:root{color-scheme:light;--bg:#fff;--fg:#1c2430;--soft:#5b6675;--rule:#d9dee5;--faint:#f3f5f8;
--accent:#2463b4;--warn:#8a5300;--warnbg:#fff5e0;--hover:#0f2f5c14;--edge:#0f2f5c38;--km:#aab2bd;
--k0:#2b6cb8;--k1:#e59a33;--k2:#3f9f78;--k3:#c05a97;--k4:#8069c4;--k5:#58b0d0;--k6:#a8992c;
--k7:#8b939e}
@media screen and (prefers-color-scheme:dark){:root{color-scheme:dark;--bg:#14181e;--fg:#e3e8ef;
--soft:#9aa5b4;--rule:#323a45;--faint:#1c222a;--accent:#7db2f2;--warn:#f0bd68;--warnbg:#332813;
--hover:#cfe2ff1c;--edge:#cfe2ff40;--km:#59626e;--k0:#5b9be6;--k1:#e8a54b;--k2:#55b98f;--k3:#d97fb4;--k4:#a391e3;
--k5:#76c5e0;--k6:#c4b64f;--k7:#7f8894}}
.two{--k1:#c3ccd8}
@media screen and (prefers-color-scheme:dark){.two{--k1:#4a5564}}
*{box-sizing:border-box}
body{margin:0 auto;padding:2rem 1.5rem 4rem;max-width:80rem;background:var(--bg);color:var(--fg);
font:15px/1.5 system-ui,-apple-system,"Segoe UI",Roboto,"Noto Sans","DejaVu Sans",sans-serif;
print-color-adjust:exact;-webkit-print-color-adjust:exact}
h1{font-size:1.6rem;line-height:1.25;margin:0 0 .5rem;overflow-wrap:anywhere}
h2{font-size:1.25rem;margin:2.5rem 0 .5rem;overflow-wrap:anywhere}
h3{font-size:1.1rem;margin:0 0 .25rem;overflow-wrap:anywhere}
h3[id]{margin-top:2.25rem}
p{margin:.35rem 0;max-width:56rem}
a{color:var(--accent);text-decoration:none}
a:hover{text-decoration:underline}
.soft,.facts{color:var(--soft)}
.facts span:not(:last-child)::after{content:" ·"}
.warn{color:var(--warn);background:var(--warnbg);border-radius:4px;padding:.25rem .6rem;
width:fit-content}
section{margin-top:2.25rem;padding-top:1.25rem;border-top:1px solid var(--rule)}
.scroll{overflow-x:auto;margin:.75rem 0;background:
linear-gradient(to right,var(--bg) 40%,#0000) 0/2.5rem 100% no-repeat local,
linear-gradient(to left,var(--bg) 40%,#0000) 100%/2.5rem 100% no-repeat local,
linear-gradient(to right,var(--edge),#0000) 0/1rem 100% no-repeat scroll,
linear-gradient(to left,var(--edge),#0000) 100%/1rem 100% no-repeat scroll}
table{border-collapse:collapse;font-variant-numeric:tabular-nums;font-size:.9rem}
th,td{padding:.28rem .55rem;text-align:right;white-space:nowrap}
th{color:var(--soft);font-weight:600;border-bottom:1px solid var(--rule);vertical-align:bottom}
td{border-bottom:1px solid var(--faint)}
th.t,td.t{text-align:left}
th.c{white-space:normal;max-width:8rem;overflow-wrap:break-word}
@media screen{:where(.scroll) th:first-child,:where(.scroll) td:first-child{position:sticky;left:0;
background:var(--bg)}}
td.w{white-space:normal;overflow-wrap:break-word;max-width:26rem}
.pair{display:flex;flex-wrap:wrap;gap:0 2rem;align-items:flex-start}
.pair>*{max-width:100%}
tbody tr:hover td{background:var(--faint)}
tr.sum td{border-top:1px solid var(--rule);font-weight:600}
td.s{white-space:normal;min-width:9rem}td.l{min-width:22rem}
td.gain{min-width:9rem;background:linear-gradient(var(--k0),var(--k0)) no-repeat .55rem 80%/0 3px;
padding-bottom:.5rem}
ul.legend{list-style:none;display:flex;flex-wrap:wrap;gap:.15rem 1.1rem;margin:.75rem 0 .25rem;
padding:0;font-size:.85rem}
ul.legend li{overflow-wrap:anywhere}
ul.legend i{display:inline-block;width:.75em;height:.75em;border-radius:2px;margin-right:.4em}
svg{display:block;max-width:100%;height:auto}
svg text{font-size:11.5px;fill:var(--soft)}
svg.defs{position:absolute;width:0;height:0}
svg .cap{font-weight:600}
.end{text-anchor:end}.mid{text-anchor:middle}
.grid,.base,.line,.ref{fill:none;stroke:var(--rule)}
.base{stroke:var(--soft)}
.line{stroke-width:2;stroke-linejoin:round}
.thin{stroke-width:1}
.ref{stroke-dasharray:5 4;stroke:var(--soft)}
.h{fill:#0000}.h:hover{fill:var(--hover)}
.km{fill:var(--km)}.kb{fill:var(--faint)}.missing{fill:url(#hatch);stroke:var(--km)}
.k0{fill:var(--k0);background:var(--k0)}.l0{stroke:var(--k0)}
.k1{fill:var(--k1);background:var(--k1)}.l1{stroke:var(--k1)}
.k2{fill:var(--k2);background:var(--k2)}.l2{stroke:var(--k2)}
.k3{fill:var(--k3);background:var(--k3)}.l3{stroke:var(--k3)}
.k4{fill:var(--k4);background:var(--k4)}.l4{stroke:var(--k4)}
.k5{fill:var(--k5);background:var(--k5)}.l5{stroke:var(--k5)}
.k6{fill:var(--k6);background:var(--k6)}.l6{stroke:var(--k6)}
.k7{fill:var(--k7);background:var(--k7)}.l7{stroke:var(--k7)}
@media screen and (max-width:40rem){body{padding:1rem 1rem 3rem}td.w{max-width:11rem;min-width:8rem}
td.gain{min-width:6rem}th{white-space:normal}
th,td{padding:.28rem .5rem}}
@media print{@page{margin:12mm}
body{max-width:none;padding:0;font-size:9pt}
h1{font-size:15pt}h2{font-size:12pt;margin-top:4mm}h3{font-size:10pt}h3[id]{margin-top:4mm}
.scroll{overflow:visible;background:none;margin:.5mm 0}
section{margin:1mm 0 0;padding-top:1mm}
section,tr,svg,.head{break-inside:avoid}
.head{line-height:1.2}
.head h3,.head .facts,ul.legend,ul.legend li{display:inline;margin:0 1em 0 0}
ul.legend li{white-space:nowrap}
.head .facts,ul.legend{font-size:6.5pt}
.pair{gap:0 4mm}
.pair>*{flex:none}
.pair>:first-child{flex:1 0 52mm;max-width:fit-content}
svg{min-width:0!important;max-height:30.5mm;width:auto}
svg text{font-size:14px}
h2,h3,.head{break-after:avoid}
thead{display:table-header-group}
table{font-size:7pt;line-height:1.2}
th,td{padding:.03rem .2rem}
th.c{max-width:5.5rem}
section:not(.two) table,.plain table{font-size:6pt}section:not(.two) svg{max-height:26mm}
td.gain{padding-bottom:.16rem;background-position:.25rem 100%}
td.w{overflow-wrap:anywhere;min-width:8rem}td.s{min-width:0}td.l{min-width:14rem}
a{color:inherit}}
)css";

}  // namespace MCBinModel
