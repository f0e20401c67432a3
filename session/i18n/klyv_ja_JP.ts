<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja_JP" sourcelanguage="en">
<context>
    <name>AEPoint</name>
    <message>
        <source>   2D </source>
        <translation>   2D </translation>
    </message>
    <message>
        <source>  Energy(eV)</source>
        <translation>  エネルギー(eV)</translation>
    </message>
    <message>
        <source>  mut(Ref 1)</source>
        <translation>  μt(標準1)</translation>
    </message>
    <message>
        <source>  mut(Ref 2)</source>
        <translation>  μt(標準2)</translation>
    </message>
    <message>
        <source>  mut(Target)</source>
        <translation>  μt(解析対象)</translation>
    </message>
    <message>
        <source>Frame</source>
        <translation>フレーム</translation>
    </message>
    <message>
        <source>No. </source>
        <translation>番号 </translation>
    </message>
    <message>
        <source>mut(Ref 3)</source>
        <translation>μt(標準3)</translation>
    </message>
    <message>
        <source>mut(Ref 4)</source>
        <translation>μt(標準4)</translation>
    </message>
</context>
<context>
    <name>AFileSelect</name>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>クリア</translation>
    </message>
    <message>
        <source>File</source>
        <translation>ファイル</translation>
    </message>
    <message>
        <source>Frame</source>
        <translation>フレーム</translation>
    </message>
    <message>
        <source>Sel.</source>
        <translation>選択</translation>
    </message>
    <message>
        <source>dE[eV]</source>
        <translation>ΔE[eV]</translation>
    </message>
</context>
<context>
    <name>ARefFile</name>
    <message>
        <source>1</source>
        <translation>1</translation>
    </message>
    <message>
        <source>Frame</source>
        <translation>フレーム</translation>
    </message>
    <message>
        <source>Ratio</source>
        <translation>比率</translation>
    </message>
    <message>
        <source>Ref 1</source>
        <translation>標準1</translation>
    </message>
    <message>
        <source>Use</source>
        <translation>使用</translation>
    </message>
    <message>
        <source>Valence</source>
        <translation>価数</translation>
    </message>
    <message>
        <source>dMut</source>
        <translation>Δμt</translation>
    </message>
</context>
<context>
    <name>AXafsFileSelect</name>
    <message>
        <source>Edge Jump : %1</source>
        <translation>エッジジャンプ: %1</translation>
    </message>
    <message>
        <source>Edge Jump(1) : %1</source>
        <translation>エッジジャンプ(1): %1</translation>
    </message>
    <message>
        <source>Eng.[eV]</source>
        <translation>エネルギー[eV]</translation>
    </message>
    <message>
        <source>mut</source>
        <translation>μt</translation>
    </message>
</context>
<context>
    <name>Body</name>
    <message>
        <source>MainWindow</source>
        <translation>メインウィンドウ</translation>
    </message>
</context>
<context>
    <name>DispABase</name>
    <message>
        <source> x:</source>
        <translation> x:</translation>
    </message>
    <message>
        <source>Frame</source>
        <translation>フレーム</translation>
    </message>
    <message>
        <source>P/D</source>
        <translation>着脱</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>テキストラベル</translation>
    </message>
    <message>
        <source>x-title</source>
        <translation>x軸の名称</translation>
    </message>
    <message>
        <source>y-title</source>
        <translation>y軸の名称</translation>
    </message>
    <message>
        <source>y:</source>
        <translation>y:</translation>
    </message>
</context>
<context>
    <name>DispArea</name>
    <message>
        <source>Frame</source>
        <translation>フレーム</translation>
    </message>
</context>
<context>
    <name>DispMBase</name>
    <message>
        <source>  Val:</source>
        <translation>  値:</translation>
    </message>
    <message>
        <source>  x:</source>
        <translation>  x:</translation>
    </message>
    <message>
        <source>  y:</source>
        <translation>  y:</translation>
    </message>
    <message>
        <source>Frame</source>
        <translation>フレーム</translation>
    </message>
    <message>
        <source>P/D</source>
        <translation>着脱</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>テキストラベル</translation>
    </message>
</context>
<context>
    <name>Displays</name>
    <message>
        <source>Frame</source>
        <translation>フレーム</translation>
    </message>
    <message>
        <source>Histgram of a</source>
        <translation>aのヒストグラム</translation>
    </message>
    <message>
        <source>Histgram of dMut</source>
        <translation>Δμtのヒストグラム</translation>
    </message>
    <message>
        <source>LCF vs 4PS</source>
        <translation>LCFと4点法の比較</translation>
    </message>
    <message>
        <source>M2/M3</source>
        <translation>M2/M3</translation>
    </message>
    <message>
        <source>Muts</source>
        <translation>全μt</translation>
    </message>
    <message>
        <source>Ref1</source>
        <translation>標準1</translation>
    </message>
    <message>
        <source>Ref2</source>
        <translation>標準2</translation>
    </message>
    <message>
        <source>Ref3</source>
        <translation>標準3</translation>
    </message>
    <message>
        <source>Ref4</source>
        <translation>標準4</translation>
    </message>
    <message>
        <source>Target</source>
        <translation>解析対象</translation>
    </message>
    <message>
        <source>dMut/v or a</source>
        <translation>Δμt/価数またはa</translation>
    </message>
</context>
<context>
    <name>FourPs</name>
    <message>
        <source>  Non Equiv. Meth.</source>
        <translation>  非等吸収点法</translation>
    </message>
    <message>
        <source>%1</source>
        <translation>%1</translation>
    </message>
    <message>
        <source>, Valence = %1, Base = %2</source>
        <translation>, 価数 = %1, ベース = %2</translation>
    </message>
    <message>
        <source>, Valence = %1, t = %2</source>
        <translation>, 価数 = %1, 相対厚さ = %2</translation>
    </message>
    <message>
        <source>-0.2</source>
        <translation>-0.2</translation>
    </message>
    <message>
        <source>-50</source>
        <translation>-50</translation>
    </message>
    <message>
        <source>1.2</source>
        <translation>1.2</translation>
    </message>
    <message>
        <source>1.5</source>
        <translation>1.5</translation>
    </message>
    <message>
        <source>100</source>
        <translation>100</translation>
    </message>
    <message>
        <source>3.5</source>
        <translation>3.5</translation>
    </message>
    <message>
        <source>3ps: a = %1, Valence = %2</source>
        <translation>3ps: 標準1の比率 = %1, 価数 = %2</translation>
    </message>
    <message>
        <source>4 Points Meth.</source>
        <translation>4点法</translation>
    </message>
    <message>
        <source>4 points.</source>
        <translation>4点</translation>
    </message>
    <message>
        <source>4ps</source>
        <translation>4ps</translation>
    </message>
    <message>
        <source>4ps2: a = %1, Valence = %2, t/ts = %3</source>
        <translation>4ps2: 標準1の比率=%1, 価数=%2, t/ts=%3</translation>
    </message>
    <message>
        <source>51</source>
        <translation>51</translation>
    </message>
    <message>
        <source>8350</source>
        <translation>8350</translation>
    </message>
    <message>
        <source>Amount</source>
        <translation>存在量</translation>
    </message>
    <message>
        <source>Amount dMut</source>
        <translation>存在量 Δμt</translation>
    </message>
    <message>
        <source>Amouont</source>
        <translation>存在量</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>自動</translation>
    </message>
    <message>
        <source>B.G.Line Type: </source>
        <translation>バックグラウンド線の種類: </translation>
    </message>
    <message>
        <source>Boxes</source>
        <translation>区間数</translation>
    </message>
    <message>
        <source>C1</source>
        <translation>C1</translation>
    </message>
    <message>
        <source>C2</source>
        <translation>C2</translation>
    </message>
    <message>
        <source>Calc.</source>
        <translation>計算</translation>
    </message>
    <message>
        <source>Calc. Type for t, mu0, and k: </source>
        <translation>t, μ0, kの計算方法: </translation>
    </message>
    <message>
        <source>Can&apos;t open the file [%1]</source>
        <translation>ファイル[%1]が開けません。</translation>
    </message>
    <message>
        <source>Data Map</source>
        <translation>データマップ</translation>
    </message>
    <message>
        <source>Data Processing</source>
        <translation>データ処理</translation>
    </message>
    <message>
        <source>Disp Select : </source>
        <translation>表示選択 : </translation>
    </message>
    <message>
        <source>Disp. Only</source>
        <translation>表示のみ</translation>
    </message>
    <message>
        <source>Edge[eV]</source>
        <translation>吸収端[eV]</translation>
    </message>
    <message>
        <source>Energy Range is not selected, which should by selected by CB of TR.</source>
        <translation>線形結合計算を行うエネルギー範囲が選択されていません(「膜厚比計算」のチェックボックスで選択)。</translation>
    </message>
    <message>
        <source>Eng.</source>
        <translation>エネルギー</translation>
    </message>
    <message>
        <source>Eng.[eV]</source>
        <translation>エネルギー[eV]</translation>
    </message>
    <message>
        <source>Equiv.</source>
        <translation>吸収点</translation>
    </message>
    <message>
        <source>Exact 4 points</source>
        <translation>4点厳密解</translation>
    </message>
    <message>
        <source>Exec. and Results</source>
        <translation>実行と結果</translation>
    </message>
    <message>
        <source>F.P.</source>
        <translation>図指定</translation>
    </message>
    <message>
        <source>Frame</source>
        <translation>フレーム</translation>
    </message>
    <message>
        <source>From</source>
        <translation>下限</translation>
    </message>
    <message>
        <source>Full Range</source>
        <translation>全範囲</translation>
    </message>
    <message>
        <source>Hist Grams</source>
        <translation>ヒストグラム</translation>
    </message>
    <message>
        <source>LCF</source>
        <translation>LCF</translation>
    </message>
    <message>
        <source>Least Square</source>
        <translation>最小二乗法</translation>
    </message>
    <message>
        <source>Linear</source>
        <translation>直線</translation>
    </message>
    <message>
        <source>M2</source>
        <translation>M2</translation>
    </message>
    <message>
        <source>M3</source>
        <translation>M3</translation>
    </message>
    <message>
        <source>Map</source>
        <translation>マップ</translation>
    </message>
    <message>
        <source>Map Select</source>
        <translation>マップ選択</translation>
    </message>
    <message>
        <source>More Conds</source>
        <translation>詳細条件</translation>
    </message>
    <message>
        <source>No normalize</source>
        <translation>規格化なし</translation>
    </message>
    <message>
        <source>No.</source>
        <translation>番号</translation>
    </message>
    <message>
        <source>Non</source>
        <translation>非等</translation>
    </message>
    <message>
        <source>Non Equiv. Meth.</source>
        <translation>非等吸収点法</translation>
    </message>
    <message>
        <source>Normalized by 2 Vics </source>
        <translation>Victoreen線2本で規格化 </translation>
    </message>
    <message>
        <source>Normalized by edge jump</source>
        <translation>エッジジャンプで規格化</translation>
    </message>
    <message>
        <source>Num.</source>
        <translation>度数</translation>
    </message>
    <message>
        <source>Number of Valid Reference files is %1, which is less than 2</source>
        <translation>有効な標準試料が%2個しか指定されていません(最低2つ必要です)。</translation>
    </message>
    <message>
        <source>Number of selected data sets %1 is less than %2.</source>
        <translation>マップデータがが%1個しか選択されていません。(最低%2個選択する必要があります)</translation>
    </message>
    <message>
        <source>Number of selected data sets %1 is not %2.</source>
        <translation>データセットが%1個選ばれています。%2個選択して下さい。</translation>
    </message>
    <message>
        <source>Number of valied Ref Files is %1, which is less than 2.</source>
        <translation>標準試料の数が%1しかありません(最低2つ必要です)。</translation>
    </message>
    <message>
        <source>Params for Vic. Lines</source>
        <translation>Victoreen線のパラメータ</translation>
    </message>
    <message>
        <source>Post E. Line</source>
        <translation>ポストエッジ線</translation>
    </message>
    <message>
        <source>Post Edge Start [eV]</source>
        <translation>ポストエッジ始点 [eV]</translation>
    </message>
    <message>
        <source>Pre E. Line</source>
        <translation>プレエッジ線</translation>
    </message>
    <message>
        <source>Pre Edge End [eV]</source>
        <translation>プレエッジ終点 [eV]</translation>
    </message>
    <message>
        <source>Ratio 1</source>
        <translation>比率1</translation>
    </message>
    <message>
        <source>Ratio 2</source>
        <translation>比率2</translation>
    </message>
    <message>
        <source>Ratio 3</source>
        <translation>比率3</translation>
    </message>
    <message>
        <source>Ratio 4</source>
        <translation>比率4</translation>
    </message>
    <message>
        <source>Ratio2</source>
        <translation>比率2</translation>
    </message>
    <message>
        <source>Rattio 1</source>
        <translation>比率1</translation>
    </message>
    <message>
        <source>Record Select :</source>
        <translation>記録選択 :</translation>
    </message>
    <message>
        <source>Ref %1</source>
        <translation>標準%1</translation>
    </message>
    <message>
        <source>Ref File %1 is not valid.</source>
        <translation>標準[%1]が無効です。</translation>
    </message>
    <message>
        <source>Ref.1</source>
        <translation>標準1</translation>
    </message>
    <message>
        <source>Ref.2</source>
        <translation>標準2</translation>
    </message>
    <message>
        <source>Ref.3</source>
        <translation>標準3</translation>
    </message>
    <message>
        <source>Ref.4</source>
        <translation>標準4</translation>
    </message>
    <message>
        <source>Refs/Target XAFS Spectra</source>
        <translation>標準試料・解析対象のXAFSスペクトル</translation>
    </message>
    <message>
        <source>Refs: Sub.</source>
        <translation>標準試料: 差引</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>除外</translation>
    </message>
    <message>
        <source>Result Map</source>
        <translation>結果マップ</translation>
    </message>
    <message>
        <source>Result of LCF :: </source>
        <translation>結果(LCF) :: </translation>
    </message>
    <message>
        <source>Result of NEQ :: </source>
        <translation>結果(NEQ) :: </translation>
    </message>
    <message>
        <source>Select 2D Map Data</source>
        <translation>2Dマップデータ選択</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>表示</translation>
    </message>
    <message>
        <source>Show Data Map</source>
        <translation>データマップ表示</translation>
    </message>
    <message>
        <source>Show Graphs</source>
        <translation>グラフ表示</translation>
    </message>
    <message>
        <source>Show Res. Map</source>
        <translation>結果マップ表示</translation>
    </message>
    <message>
        <source>Sub pre Vic.</source>
        <translation>プレエッジ線差引</translation>
    </message>
    <message>
        <source>Target</source>
        <translation>解析対象</translation>
    </message>
    <message>
        <source>Target File1 is not valid.</source>
        <translation>解析対象ファイルが設定されていません。</translation>
    </message>
    <message>
        <source>Target: Sub.</source>
        <translation>解析対象: 差引</translation>
    </message>
    <message>
        <source>The 1st Ref File is not valid.</source>
        <translation>１番目の標準試料が有効ではありません。</translation>
    </message>
    <message>
        <source>The 2nd Ref File is not valid.</source>
        <translation>2番目の標準試料が有効ではありません。</translation>
    </message>
    <message>
        <source>Thick.</source>
        <translation>膜厚</translation>
    </message>
    <message>
        <source>To</source>
        <translation>上限</translation>
    </message>
    <message>
        <source>Use</source>
        <translation>使用</translation>
    </message>
    <message>
        <source>V Point is not selected</source>
        <translation>非等吸収点を選択して下さい。</translation>
    </message>
    <message>
        <source>V Point is not selected.</source>
        <translation>非等吸収点を選択して下さい。</translation>
    </message>
    <message>
        <source>Valence</source>
        <translation>価数</translation>
    </message>
    <message>
        <source>Vic.</source>
        <translation>Victoreen</translation>
    </message>
    <message>
        <source>When drawing all mut</source>
        <translation>全μt描画時</translation>
    </message>
    <message>
        <source>Write</source>
        <translation>書き出し</translation>
    </message>
    <message>
        <source>XAFS spectra</source>
        <translation>XAFSスペクトル</translation>
    </message>
    <message>
        <source>[eV]</source>
        <translation>[eV]</translation>
    </message>
    <message>
        <source>a = %1, Valence = %2, t/ts = %3</source>
        <translation>標準1の比率=%1, 価数=%2, t/ts=%3</translation>
    </message>
    <message>
        <source>dMut</source>
        <translation>Δμt</translation>
    </message>
    <message>
        <source>dMut 1</source>
        <translation>Δμt 1</translation>
    </message>
    <message>
        <source>dMut 2</source>
        <translation>Δμt 2</translation>
    </message>
    <message>
        <source>dMut 3</source>
        <translation>Δμt 3</translation>
    </message>
    <message>
        <source>dMut 4</source>
        <translation>Δμt 4</translation>
    </message>
    <message>
        <source>mu0</source>
        <translation>μ0</translation>
    </message>
    <message>
        <source>mut</source>
        <translation>μt</translation>
    </message>
    <message>
        <source>mut0</source>
        <translation>μt0</translation>
    </message>
</context>
<context>
    <name>PopBase</name>
    <message>
        <source>Frame</source>
        <translation>フレーム</translation>
    </message>
</context>
<context>
    <name>cBar</name>
    <message>
        <source>Frame</source>
        <translation>フレーム</translation>
    </message>
</context>
</TS>
