<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja_JP" sourcelanguage="en">
<context>
    <name>FourPs</name>
    <message>
        <source>There is not enough memory for these maps</source>
        <translation>マップを計算するためのメモリが足りません</translation>
    </message>
    <message>
        <source>Writing replaces the input %1</source>
        <translation>書き込むと入力ファイル %1 が上書きされます</translation>
    </message>
    <message>
        <source>1. References: spectrum, valence, Use</source>
        <translation>1. 標準試料: スペクトル、価数、「使用」</translation>
    </message>
    <message>
        <source>2. Energies: map, Use     3. Calc.</source>
        <translation>2. エネルギー: マップ、「使用」     3. 計算</translation>
    </message>
    <message>
        <source>4. Result file, Write</source>
        <translation>4. 結果ファイル、書き出し</translation>
    </message>
    <message>
        <source>Drop a map</source>
        <translation>マップをドロップ</translation>
    </message>
    <message>
        <source>Drop or select an XAFS spectrum</source>
        <translation>XAFSスペクトルをドロップまたは選択</translation>
    </message>
    <message>
        <source>Drop or select the target&apos;s spectrum</source>
        <translation>解析対象のスペクトルをドロップまたは選択</translation>
    </message>
    <message>
        <source>Further spectra to show</source>
        <translation>追加表示するスペクトル</translation>
    </message>
    <message>
        <source>Open session...</source>
        <translation>セッションを開く...</translation>
    </message>
    <message>
        <source>Result file</source>
        <translation>結果ファイル</translation>
    </message>
    <message>
        <source>?</source>
        <translation>?</translation>
    </message>
    <message>
        <source>Save session...</source>
        <translation>セッションを保存...</translation>
    </message>
    <message>
        <source>The inputs have changed: calculate the map first</source>
        <translation>入力が変わっています。先にマップを計算してください</translation>
    </message>
    <message>
        <source>Written: %1</source>
        <translation>書き出しました: %1</translation>
    </message>
    <message>
        <source>Precision</source>
        <translation>精度</translation>
    </message>
    <message>
        <source>σ Valence</source>
        <translation>σ 価数</translation>
    </message>
    <message>
        <source>σ Amount</source>
        <translation>σ 存在量</translation>
    </message>
    <message>
        <source>σ Ratio 1</source>
        <translation>σ 比率1</translation>
    </message>
    <message>
        <source>σ Ratio 2</source>
        <translation>σ 比率2</translation>
    </message>
    <message>
        <source>σ Ratio 3</source>
        <translation>σ 比率3</translation>
    </message>
    <message>
        <source>σ Ratio 4</source>
        <translation>σ 比率4</translation>
    </message>
    <message>
        <source>Residual</source>
        <translation>残差</translation>
    </message>
    <message>
        <source>sigma Ratio 1</source>
        <translation>比率1の標準偏差</translation>
    </message>
    <message>
        <source>sigma Ratio 2</source>
        <translation>比率2の標準偏差</translation>
    </message>
    <message>
        <source>sigma Ratio 3</source>
        <translation>比率3の標準偏差</translation>
    </message>
    <message>
        <source>sigma Ratio 4</source>
        <translation>比率4の標準偏差</translation>
    </message>
    <message>
        <source>sigma Valence</source>
        <translation>価数の標準偏差</translation>
    </message>
    <message>
        <source>sigma Amount</source>
        <translation>存在量の標準偏差</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>元に戻す</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>復元</translation>
    </message>
</context>
<context>
    <name>PixelWindow</name>
    <message>
        <source>Energy [eV]</source>
        <translation>エネルギー [eV]</translation>
    </message>
    <message>
        <source>Absorption</source>
        <translation>吸収</translation>
    </message>
    <message>
        <source>Residual</source>
        <translation>残差</translation>
    </message>
    <message>
        <source>measured</source>
        <translation>測定値</translation>
    </message>
    <message>
        <source>V point</source>
        <translation>非等吸収点</translation>
    </message>
    <message>
        <source>fit</source>
        <translation>フィット</translation>
    </message>
    <message>
        <source>background</source>
        <translation>バックグラウンド</translation>
    </message>
    <message>
        <source>exact fit</source>
        <translation>厳密解</translation>
    </message>
    <message>
        <source>The fit has no finite result.</source>
        <translation>フィットの結果が有限値になりません。</translation>
    </message>
    <message>
        <source>Three points</source>
        <translation>3点法</translation>
    </message>
    <message>
        <source>Four points, exact</source>
        <translation>4点法 (厳密解)</translation>
    </message>
    <message>
        <source>Four points, least squares</source>
        <translation>4点法 (最小二乗法)</translation>
    </message>
    <message>
        <source>Non-equivalent, linear</source>
        <translation>非等吸収点法 (直線)</translation>
    </message>
    <message>
        <source>Non-equivalent, Victoreen</source>
        <translation>非等吸収点法 (Victoreen)</translation>
    </message>
    <message>
        <source>Total dMut</source>
        <translation>全dMut</translation>
    </message>
    <message>
        <source>Relative dMut</source>
        <translation>相対dMut</translation>
    </message>
    <message>
        <source>from the residuals of all pixels</source>
        <translation>全ピクセルの残差から</translation>
    </message>
    <message>
        <source>as given</source>
        <translation>指定値</translation>
    </message>
    <message>
        <source>from the counted photons</source>
        <translation>計数値から</translation>
    </message>
    <message>
        <source>from the residuals of this pixel</source>
        <translation>このピクセルの残差から</translation>
    </message>
    <message>
        <source>an exact fit does not tell</source>
        <translation>厳密解のため不明</translation>
    </message>
    <message>
        <source>not determined</source>
        <translation>決定不能</translation>
    </message>
    <message>
        <source>Pixel (%1, %2)</source>
        <translation>ピクセル (%1, %2)</translation>
    </message>
    <message>
        <source>position %1, %2</source>
        <translation>位置 %1, %2</translation>
    </message>
    <message>
        <source>at its bound</source>
        <translation>(下限)</translation>
    </message>
    <message>
        <source>Bounds are taken for certain.</source>
        <translation>下限は確実とみなします。</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>結果</translation>
    </message>
    <message>
        <source>Ratio of Ref.%1</source>
        <translation>標準%1の比率</translation>
    </message>
    <message>
        <source>Valence</source>
        <translation>価数</translation>
    </message>
    <message>
        <source>dMut of Ref.%1</source>
        <translation>標準%1のdMut</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>フィット</translation>
    </message>
    <message>
        <source>Energies</source>
        <translation>エネルギー数</translation>
    </message>
    <message>
        <source>Degrees of freedom</source>
        <translation>自由度</translation>
    </message>
    <message>
        <source>Residual, r.m.s.</source>
        <translation>残差 (RMS)</translation>
    </message>
    <message>
        <source>Absorption noise</source>
        <translation>吸収のノイズ</translation>
    </message>
    <message>
        <source>Errors are one standard deviation. Noise: %1.</source>
        <translation>誤差は1標準偏差。ノイズ: %1。</translation>
    </message>
    <message>
        <source>Wheel: magnify the energies around the pointer. Double click: show all</source>
        <translation>ホイール: ポインタ周辺のエネルギーを拡大。ダブルクリック: 全体を表示</translation>
    </message>
    <message>
        <source>Save drawing and numbers as a picture</source>
        <translation>グラフと数値を画像として保存します</translation>
    </message>
    <message>
        <source>Save points, curves and numbers as text</source>
        <translation>データ点、曲線、数値をテキストとして保存します</translation>
    </message>
    <message>
        <source>Written: %1</source>
        <translation>書き出しました: %1</translation>
    </message>
    <message>
        <source>Can&apos;t write %1</source>
        <translation>%1に書き込めません</translation>
    </message>
</context>
<context>
    <name>ToolTips</name>
    <message>
        <source>Select a file</source>
        <translation>ファイルを選択します</translation>
    </message>
    <message>
        <source>Take the file away</source>
        <translation>ファイルの指定を解除します</translation>
    </message>
    <message>
        <source>Energy shift dE of this spectrum [eV]; its energies count as E - dE</source>
        <translation>このスペクトルのエネルギーシフトdE [eV]。エネルギーをE - dEとして扱います</translation>
    </message>
    <message>
        <source>XAFS spectrum of this reference</source>
        <translation>この標準試料のXAFSスペクトル</translation>
    </message>
    <message>
        <source>XAFS spectrum of the target</source>
        <translation>解析対象のXAFSスペクトル</translation>
    </message>
    <message>
        <source>Further spectra for the graph; not analysed</source>
        <translation>グラフに追加表示するスペクトル(解析には使いません)</translation>
    </message>
    <message>
        <source>Further spectra in the graph; not analysed</source>
        <translation>グラフに追加表示しているスペクトル(解析には使いません)</translation>
    </message>
    <message>
        <source>Remove the selected spectrum from this list</source>
        <translation>選択したスペクトルを一覧から除きます</translation>
    </message>
    <message>
        <source>Map at this energy; several at once fill this row and the next ones</source>
        <translation>このエネルギーのマップ。複数を選ぶとこの行から順に割り当てます</translation>
    </message>
    <message>
        <source>This reference takes part in the calculations</source>
        <translation>この標準試料を計算に使います</translation>
    </message>
    <message>
        <source>Valence of the absorbing element in this reference</source>
        <translation>この標準試料中の吸収元素の価数</translation>
    </message>
    <message>
        <source>Result: fraction of this reference in the target</source>
        <translation>結果: 解析対象中のこの標準試料の比率</translation>
    </message>
    <message>
        <source>Result: share of this reference in the edge jump of the target, in units of mut</source>
        <translation>結果: 解析対象のエッジジャンプのうちこの標準試料の分 (μtの単位)</translation>
    </message>
    <message>
        <source>Edge energy E0 [eV]; found in the reference that was read last</source>
        <translation>吸収端エネルギーE0 [eV]。最後に読み込んだ標準試料から求めます</translation>
    </message>
    <message>
        <source>End of the pre-edge range relative to E0 [eV]; negative is below the edge</source>
        <translation>プレエッジ領域の終点 (E0基準) [eV]。負の値は吸収端より低エネルギー側</translation>
    </message>
    <message>
        <source>Start of the post-edge range relative to E0 [eV]</source>
        <translation>ポストエッジ領域の始点 (E0基準) [eV]</translation>
    </message>
    <message>
        <source>On: non-equivalent method with all used references; off: four-points methods with the first two</source>
        <translation>オン: 使用する全標準試料による非等吸収点法、オフ: 最初の2つの標準試料による4点法</translation>
    </message>
    <message>
        <source>Show the conditions of both methods</source>
        <translation>両解析法の条件を表示します</translation>
    </message>
    <message>
        <source>Exact solution with four used energies (with three: three points, without k)</source>
        <translation>使用する4エネルギーでの厳密解 (3エネルギーの場合はkを含まない3点法)</translation>
    </message>
    <message>
        <source>Least squares over four or more used energies</source>
        <translation>使用する4つ以上のエネルギーでの最小二乗法</translation>
    </message>
    <message>
        <source>Background mu0 + C1 lambda^3 + C2 lambda^4, fitted to every pixel</source>
        <translation>バックグラウンド μ0 + C1 λ^3 + C2 λ^4 を画素ごとにフィットします</translation>
    </message>
    <message>
        <source>Background mu0 + C1 E, fitted to every pixel</source>
        <translation>バックグラウンド μ0 + C1 E を画素ごとにフィットします</translation>
    </message>
    <message>
        <source>Subtract the pre-edge line from the references</source>
        <translation>標準試料からプレエッジ線を差し引きます</translation>
    </message>
    <message>
        <source>Subtract the post-edge line from the references</source>
        <translation>標準試料からポストエッジ線を差し引きます</translation>
    </message>
    <message>
        <source>Subtract the pre-edge line from the target</source>
        <translation>解析対象からプレエッジ線を差し引きます</translation>
    </message>
    <message>
        <source>Subtract the post-edge line from the target</source>
        <translation>解析対象からポストエッジ線を差し引きます</translation>
    </message>
    <message>
        <source>This energy takes part in the calculations</source>
        <translation>このエネルギーを計算に使います</translation>
    </message>
    <message>
        <source>Non-equivalent point: where the references differ most</source>
        <translation>非等吸収点: 標準試料間の差が最も大きいエネルギー</translation>
    </message>
    <message>
        <source>Bounds the energy range of the linear combination fit</source>
        <translation>線形結合フィットのエネルギー範囲の境界にします</translation>
    </message>
    <message>
        <source>Energy of this image [eV]</source>
        <translation>この画像のエネルギー [eV]</translation>
    </message>
    <message>
        <source>mut of reference 1 at this energy, minus the chosen line</source>
        <translation>このエネルギーでの標準試料1のμt (選択した線を差し引いた値)</translation>
    </message>
    <message>
        <source>mut of reference 2 at this energy, minus the chosen line</source>
        <translation>このエネルギーでの標準試料2のμt (選択した線を差し引いた値)</translation>
    </message>
    <message>
        <source>mut of reference 3 at this energy, minus the chosen line</source>
        <translation>このエネルギーでの標準試料3のμt (選択した線を差し引いた値)</translation>
    </message>
    <message>
        <source>mut of reference 4 at this energy, minus the chosen line</source>
        <translation>このエネルギーでの標準試料4のμt (選択した線を差し引いた値)</translation>
    </message>
    <message>
        <source>mut of the target at this energy, minus the chosen line</source>
        <translation>このエネルギーでの解析対象のμt (選択した線を差し引いた値)</translation>
    </message>
    <message>
        <source>Show this image as the data map</source>
        <translation>この画像をデータマップに表示します</translation>
    </message>
    <message>
        <source>A press in the graph of all spectra sets this energy; within 20 pixels of a marker it moves the marker instead. Press again to end</source>
        <translation>全μtのグラフを押した位置をこのエネルギーにします。マーカーから20ピクセル未満ではマーカーの移動になります。もう一度押すと解除します</translation>
    </message>
    <message>
        <source>Valence at the centre of the first box</source>
        <translation>最初の区間の中心の価数</translation>
    </message>
    <message>
        <source>Valence at the centre of the last box</source>
        <translation>最後の区間の中心の価数</translation>
    </message>
    <message>
        <source>Number of boxes, 2 or more</source>
        <translation>区間数 (2以上)</translation>
    </message>
    <message>
        <source>Take the limits from the values of the map</source>
        <translation>マップの値から上限と下限を決めます</translation>
    </message>
    <message>
        <source>Amount (in units of mut) or t/ts at the centre of the first box</source>
        <translation>最初の区間の中心の存在量 (μtの単位) またはt/ts</translation>
    </message>
    <message>
        <source>Amount (in units of mut) or t/ts at the centre of the last box</source>
        <translation>最後の区間の中心の存在量 (μtの単位) またはt/ts</translation>
    </message>
    <message>
        <source>Show or hide the data map</source>
        <translation>データマップの表示を切り替えます</translation>
    </message>
    <message>
        <source>Show or hide the result map</source>
        <translation>結果マップの表示を切り替えます</translation>
    </message>
    <message>
        <source>Show or hide the graphs</source>
        <translation>グラフの表示を切り替えます</translation>
    </message>
    <message>
        <source>Spectra as measured (mut)</source>
        <translation>測定したままのスペクトル (μt)</translation>
    </message>
    <message>
        <source>Spectra minus their pre-edge lines (mut)</source>
        <translation>プレエッジ線を差し引いたスペクトル (μt)</translation>
    </message>
    <message>
        <source>Spectra minus their pre-edge lines, over their edge jumps</source>
        <translation>プレエッジ線を差し引き、エッジジャンプで割ったスペクトル</translation>
    </message>
    <message>
        <source>Spectra from 0 at the pre-edge line to 1 at the post-edge line</source>
        <translation>プレエッジ線を0、ポストエッジ線を1としたスペクトル</translation>
    </message>
    <message>
        <source>On: whole spectra; off: the range of the used energies</source>
        <translation>オン: スペクトル全体、オフ: 使用するエネルギーの範囲</translation>
    </message>
    <message>
        <source>Draw lines between the pixels of both maps</source>
        <translation>両マップの画素の境界に線を引きます</translation>
    </message>
    <message>
        <source>Move the graph into a window of its own, and back</source>
        <translation>グラフを別ウィンドウに切り離す、または元に戻します</translation>
    </message>
    <message>
        <source>Position of the pointer, in units of the x axis</source>
        <translation>ポインタの位置 (x軸の単位)</translation>
    </message>
    <message>
        <source>Position of the pointer, in units of the y axis</source>
        <translation>ポインタの位置 (y軸の単位)</translation>
    </message>
    <message>
        <source>Move the map into a window of its own, and back</source>
        <translation>マップを別ウィンドウに切り離す、または元に戻します</translation>
    </message>
    <message>
        <source>Value of the uppermost colour; typing ends auto scale</source>
        <translation>最上端の色の値。入力すると自動スケールを解除します</translation>
    </message>
    <message>
        <source>Value of the lowermost colour; typing ends auto scale</source>
        <translation>最下端の色の値。入力すると自動スケールを解除します</translation>
    </message>
    <message>
        <source>Drag a line to stretch the colours; right button: palettes, invert, auto scale</source>
        <translation>線をドラッグすると色の範囲が変わります。右ボタン: パレット, 反転, 自動スケール</translation>
    </message>
    <message>
        <source>Value of the pixel under the pointer, in units of the map</source>
        <translation>ポインタの位置の画素の値 (マップの単位)</translation>
    </message>
    <message>
        <source>Position of the pointer, x [pixels]</source>
        <translation>ポインタの位置 x [画素]</translation>
    </message>
    <message>
        <source>Position of the pointer, y [pixels]</source>
        <translation>ポインタの位置 y [画素]</translation>
    </message>
    <message>
        <source>Open a session file: files, parameters and view</source>
        <translation>セッションファイル (ファイル, パラメータ, 表示の設定) を開きます</translation>
    </message>
    <message>
        <source>Save files, parameters and view as a session file</source>
        <translation>ファイル, パラメータ, 表示の設定をセッションファイルに保存します</translation>
    </message>
    <message>
        <source>Open the manual in the browser</source>
        <translation>説明書をブラウザで開きます</translation>
    </message>
    <message>
        <source>Analyse the spectrum of the target by the chosen method</source>
        <translation>選択した方法で解析対象のスペクトルを解析します</translation>
    </message>
    <message>
        <source>Result of the chosen method for the target</source>
        <translation>選択した方法による解析対象の結果</translation>
    </message>
    <message>
        <source>Result: edge jump of the target, in units of mut (non-equivalent method)</source>
        <translation>結果: 解析対象のエッジジャンプ (μtの単位, 非等吸収点法)</translation>
    </message>
    <message>
        <source>Fit the spectrum of the target by the used references, in the range ticked under LCF</source>
        <translation>LCFでチェックした範囲で、解析対象のスペクトルを使用する標準試料の線形結合でフィットします</translation>
    </message>
    <message>
        <source>Result of the linear combination fit: fractions, valence, constant</source>
        <translation>線形結合フィットの結果: 比率, 価数, 定数</translation>
    </message>
    <message>
        <source>Analyse every pixel of the maps by the chosen method</source>
        <translation>選択した方法でマップの全画素を解析します</translation>
    </message>
    <message>
        <source>Result file; two histograms are written beside it</source>
        <translation>結果ファイル。同じフォルダに2つのヒストグラムも書き出します</translation>
    </message>
    <message>
        <source>Calculate the maps and write result file and histograms; older ones are replaced without asking</source>
        <translation>マップを計算し、結果ファイルとヒストグラムを書き出します。既存のファイルは確認せずに上書きします</translation>
    </message>
    <message>
        <source>Messages and results, the last one at the end</source>
        <translation>メッセージと結果 (最新のものが末尾)</translation>
    </message>
    <message>
        <source>Fraction of the first reference</source>
        <translation>1番目の標準試料の比率</translation>
    </message>
    <message>
        <source>Fraction of the second reference</source>
        <translation>2番目の標準試料の比率</translation>
    </message>
    <message>
        <source>Fraction of the third reference</source>
        <translation>3番目の標準試料の比率</translation>
    </message>
    <message>
        <source>Fraction of the fourth reference</source>
        <translation>4番目の標準試料の比率</translation>
    </message>
    <message>
        <source>Edge jump by the first reference, in units of mut</source>
        <translation>1番目の標準試料によるエッジジャンプ (μtの単位)</translation>
    </message>
    <message>
        <source>Edge jump by the second reference, in units of mut</source>
        <translation>2番目の標準試料によるエッジジャンプ (μtの単位)</translation>
    </message>
    <message>
        <source>Edge jump by the third reference, in units of mut</source>
        <translation>3番目の標準試料によるエッジジャンプ (μtの単位)</translation>
    </message>
    <message>
        <source>Edge jump by the fourth reference, in units of mut</source>
        <translation>4番目の標準試料によるエッジジャンプ (μtの単位)</translation>
    </message>
    <message>
        <source>Constant of the background, in units of mut</source>
        <translation>バックグラウンドの定数項 (μtの単位)</translation>
    </message>
    <message>
        <source>Background: factor of lambda^3 [1/A^3], or slope [1/eV]</source>
        <translation>バックグラウンド: λ^3の係数 [1/Å^3] または傾き [1/eV]</translation>
    </message>
    <message>
        <source>Background: factor of lambda^4 [1/A^4]</source>
        <translation>バックグラウンド: λ^4の係数 [1/Å^4]</translation>
    </message>
    <message>
        <source>Mean valence of the absorbing element</source>
        <translation>吸収元素の平均価数</translation>
    </message>
    <message>
        <source>Total edge jump in units of mut, or relative thickness t/ts</source>
        <translation>全エッジジャンプ (μtの単位) または相対厚さ t/ts</translation>
    </message>
    <message>
        <source>Show what stands beside the results: standard deviations, bounded fits, choice of energies</source>
        <translation>結果に添えるもの (標準偏差、制約付きフィット、エネルギーの選択)を表示します</translation>
    </message>
    <message>
        <source>Maps of the residual and of the standard deviation (1 sigma) of ratios, valence and amount</source>
        <translation>残差と、比率・価数・存在量の標準偏差 (1シグマ)のマップを計算します</translation>
    </message>
    <message>
        <source>Write them beside the result file, as NAME_Sigma</source>
        <translation>結果ファイルの隣に NAME_Sigma として書き出します</translation>
    </message>
    <message>
        <source>Where the standard deviation s of a measured absorption comes from. A pixel&apos;s own residuals are a rough guess: with 1 or 2 degrees of freedom their mean is 0.8 to 0.9 of the truth</source>
        <translation>測定した吸収の標準偏差 s の求め方。画素自身の残差は粗い推定です (自由度1〜2では平均が真値の0.8〜0.9倍)</translation>
    </message>
    <message>
        <source>Standard deviation s of one absorption, in units of mut</source>
        <translation>吸収1点の標準偏差 s (mut の単位)</translation>
    </message>
    <message>
        <source>Non-equivalent fit: references free, or none below 0; the background stays free. Holds from the next calculation</source>
        <translation>非等吸収点法のフィット: 標準試料の係数を自由にするか、0以上に制限します (バックグラウンドは自由)。次の計算から有効です</translation>
    </message>
    <message>
        <source>Linear combination fit: ratios free, none below 0, their sum one, or both. Holds from the next fit</source>
        <translation>線形結合フィット: 比率を自由にするか、0以上、和を1、またはその両方に制限します。次のフィットから有効です</translation>
    </message>
    <message>
        <source>Leave pixels white whose standard deviation of the shown quantity exceeds the limit; histogram plots leave them out, files never do</source>
        <translation>表示中の量の標準偏差が限度を超える画素を白くします。ヒストグラムの図からも除きますが、ファイルには全画素を数えます</translation>
    </message>
    <message>
        <source>Greatest standard deviation that is shown, in units of the shown quantity</source>
        <translation>表示する標準偏差の上限 (表示中の量の単位)</translation>
    </message>
    <message>
        <source>A double click in the result map also shows the fit of that pixel in a window of its own</source>
        <translation>結果マップのダブルクリックで、その画素のフィットを別ウィンドウにも表示します</translation>
    </message>
    <message>
        <source>Which energies to measure: expected standard deviations of the present ones and of better ones</source>
        <translation>どのエネルギーを測るべきか: 現在の、またはより良いエネルギーで期待される標準偏差</translation>
    </message>
    <message>
        <source>One standard deviation of each result of the target, from its own residuals or the given s; ?: not determined</source>
        <translation>対象の各結果の標準偏差 (1シグマ)。自身の残差または与えた s から求めます。?: 求まりません</translation>
    </message>
    <message>
        <source>One standard deviation of each result of the linear combination fit; s in units of the edge jump; ?: not determined</source>
        <translation>線形結合フィットの各結果の標準偏差 (1シグマ)。s は吸収端ジャンプの単位。?: 求まりません</translation>
    </message>
    <message>
        <source>Root of the mean squared difference between absorption and fit, in units of mut</source>
        <translation>吸収とフィットの差の二乗平均平方根 (mut の単位)</translation>
    </message>
    <message>
        <source>One standard deviation of the fraction of the first reference</source>
        <translation>標準試料1の比率の標準偏差 (1シグマ)</translation>
    </message>
    <message>
        <source>One standard deviation of the fraction of the second reference</source>
        <translation>標準試料2の比率の標準偏差 (1シグマ)</translation>
    </message>
    <message>
        <source>One standard deviation of the fraction of the third reference</source>
        <translation>標準試料3の比率の標準偏差 (1シグマ)</translation>
    </message>
    <message>
        <source>One standard deviation of the fraction of the fourth reference</source>
        <translation>標準試料4の比率の標準偏差 (1シグマ)</translation>
    </message>
    <message>
        <source>One standard deviation of the valence</source>
        <translation>価数の標準偏差 (1シグマ)</translation>
    </message>
    <message>
        <source>One standard deviation of the amount</source>
        <translation>存在量の標準偏差 (1シグマ)</translation>
    </message>
    <message>
        <source>How many energies to choose; the four-points methods follow from it</source>
        <translation>選ぶエネルギーの数。4点法の種類はこの数で決まります</translation>
    </message>
    <message>
        <source>What the energies are to give with the least standard deviation: the mean valence, or the fractions of all references together</source>
        <translation>標準偏差を最小にする量: 平均価数、または全標準試料の比率</translation>
    </message>
    <message>
        <source>Lowest energy to choose [eV]; empty: 60 below the edge</source>
        <translation>選ぶエネルギーの下限 [eV]。空欄: エッジの60 eV下</translation>
    </message>
    <message>
        <source>Highest energy to choose [eV]; empty: 200 above the edge</source>
        <translation>選ぶエネルギーの上限 [eV]。空欄: エッジの200 eV上</translation>
    </message>
    <message>
        <source>Least distance between two energies [eV]</source>
        <translation>エネルギー同士の最小間隔 [eV]</translation>
    </message>
    <message>
        <source>Edge jump of the sample that is assumed, in units of mut; four points: relative thickness t/ts</source>
        <translation>仮定する試料のエッジジャンプ (μtの単位)。4点法では相対厚さ t/ts</translation>
    </message>
    <message>
        <source>Standard deviation s of one measured absorption, in units of mut; all standard deviations are proportional to it</source>
        <translation>1点の吸収測定値の標準偏差 s (μtの単位)。すべての標準偏差はこれに比例します</translation>
    </message>
    <message>
        <source>Look for the best energies, with the references and the method that the panel shows now</source>
        <translation>パネルの現在の標準試料と方法で、最適なエネルギーを探します</translation>
    </message>
    <message>
        <source>Expected standard deviations (1 sigma) for the used rows of the panel and for the proposed energies; -: not determined</source>
        <translation>パネルで使用中の行と提案エネルギーについて予想される標準偏差 (1シグマ)。-: 求まりません</translation>
    </message>
    <message>
        <source>Fill the proposed energies into the first rows of the panel, tick their Use boxes and, for four points, the V point; other rows go out of use. Maps stay as they are: images must be measured at these energies</source>
        <translation>提案エネルギーをパネルの最初の行から入力し、「使用」と、4点法では非等吸収点を選択します。他の行は使用されなくなります。マップはそのままです: 画像はこれらのエネルギーで測定する必要があります</translation>
    </message>
    <message>
        <source>Put the proposed energies [eV] on the clipboard, one a line</source>
        <translation>提案エネルギー [eV] を1行に1つずつクリップボードにコピーします</translation>
    </message>
    <message>
        <source>Close; energies that were filled in stay</source>
        <translation>閉じます。入力されたエネルギーは残ります</translation>
    </message>
    <message>
        <source>Reference 1 in the sample that is assumed, in parts: 2 : 1 : 1 is half of the first</source>
        <translation>仮定する試料中の標準1の比。2 : 1 : 1 なら1番目が半分です</translation>
    </message>
    <message>
        <source>Reference 2 in the sample that is assumed, in parts: 2 : 1 : 1 is half of the first</source>
        <translation>仮定する試料中の標準2の比。2 : 1 : 1 なら1番目が半分です</translation>
    </message>
    <message>
        <source>Reference 3 in the sample that is assumed, in parts: 2 : 1 : 1 is half of the first</source>
        <translation>仮定する試料中の標準3の比。2 : 1 : 1 なら1番目が半分です</translation>
    </message>
    <message>
        <source>Reference 4 in the sample that is assumed, in parts: 2 : 1 : 1 is half of the first</source>
        <translation>仮定する試料中の標準4の比。2 : 1 : 1 なら1番目が半分です</translation>
    </message>
    <message>
        <source>Draw regions on the result map and compare their pixels; while this is on, presses and drags on the map belong to them. Shift-drag and wheel still move and zoom</source>
        <translation>結果マップに領域を描いて画素を比べます。オンの間、マップ上のクリックとドラッグは領域の操作になります(Shift+ドラッグとホイールは移動と拡大のまま)</translation>
    </message>
    <message>
        <source>Rectangle: press, drag, release; a click selects. Polygon: click the corners; Enter or a click on the first one ends it, Backspace takes the last one back, Ctrl-click selects. Escape gives up, Delete removes the selected region</source>
        <translation>長方形: ドラッグで描き、クリックで選択。多角形: 頂点をクリックし、Enterか最初の頂点のクリックで終了、Backspaceで最後の頂点を取り消し、Ctrl+クリックで選択。Escapeで中止、Deleteで選択した領域を削除</translation>
    </message>
    <message>
        <source>Remove the selected region</source>
        <translation>選択した領域を削除します</translation>
    </message>
    <message>
        <source>Mean, standard deviation and median of every map in every region</source>
        <translation>各領域での全マップの平均、標準偏差、中央値</translation>
    </message>
    <message>
        <source>Histograms and scatter plot show the regions without the whole map</source>
        <translation>ヒストグラムと散布図に、マップ全体を除いて領域だけを表示します</translation>
    </message>
    <message>
        <source>Of the finite pixels of each region, in units of the map; the standard deviation is that of the pixels (n - 1)</source>
        <translation>各領域の有限な画素についての値(単位はマップと同じ)。標準偏差は画素のもの(n - 1)です</translation>
    </message>
    <message>
        <source>Copy the table, for a spreadsheet</source>
        <translation>表計算ソフト用に表をコピーします</translation>
    </message>
    <message>
        <source>Write the table with all digits to a CSV file</source>
        <translation>表を全桁でCSVファイルに書き出します</translation>
    </message>
    <message>
        <source>Close this window; the regions stay</source>
        <translation>この窓を閉じます(領域は残ります)</translation>
    </message>
    <message>
        <source>Sessions that were opened or saved last; grey: not there any more</source>
        <translation>最近開いた、または保存したセッション (灰色: もうありません)</translation>
    </message>
    <message>
        <source>An earlier run ended with inputs that no session holds: take them back</source>
        <translation>前回終了時にセッションに保存されていなかった入力を復元します</translation>
    </message>
    <message>
        <source>Undo (Ctrl+Z) or redo (Ctrl+Shift+Z) a change of an input or a choice</source>
        <translation>入力や選択の変更を元に戻す (Ctrl+Z)、またはやり直す (Ctrl+Shift+Z)</translation>
    </message>
</context>
<context>
    <name>cBar</name>
    <message>
        <source>Auto scale</source>
        <translation>自動スケール</translation>
    </message>
    <message>
        <source>Invert</source>
        <translation>反転</translation>
    </message>
</context>
<context>
    <name>AdvancedPanel</name>
    <message>
        <source>Precision</source>
        <translation>精度</translation>
    </message>
    <message>
        <source>Sigma maps</source>
        <translation>σマップ</translation>
    </message>
    <message>
        <source>and file</source>
        <translation>ファイルも</translation>
    </message>
    <message>
        <source>Noise from</source>
        <translation>ノイズ</translation>
    </message>
    <message>
        <source>residuals of the map</source>
        <translation>マップ全体の残差</translation>
    </message>
    <message>
        <source>residuals of the pixel</source>
        <translation>画素の残差</translation>
    </message>
    <message>
        <source>given number</source>
        <translation>数値で指定</translation>
    </message>
    <message>
        <source>counted photons</source>
        <translation>光子計数</translation>
    </message>
    <message>
        <source>Bounds</source>
        <translation>制約</translation>
    </message>
    <message>
        <source>Non equiv.</source>
        <translation>非等吸収点法</translation>
    </message>
    <message>
        <source>LCF</source>
        <translation>LCF</translation>
    </message>
    <message>
        <source>free</source>
        <translation>なし</translation>
    </message>
    <message>
        <source>not negative</source>
        <translation>0以上</translation>
    </message>
    <message>
        <source>sum is one</source>
        <translation>和が1</translation>
    </message>
    <message>
        <source>both</source>
        <translation>両方</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>表示</translation>
    </message>
    <message>
        <source>Hide pixels with sigma above</source>
        <translation>σがこれより大きい画素を隠す</translation>
    </message>
    <message>
        <source>Fit of a double-clicked pixel</source>
        <translation>ダブルクリックした画素のフィット</translation>
    </message>
    <message>
        <source>Energies...</source>
        <translation>エネルギー...</translation>
    </message>
    <message>
        <source>Target ±</source>
        <translation>対象 ±</translation>
    </message>
    <message>
        <source>LCF ±</source>
        <translation>LCF ±</translation>
    </message>
    <message>
        <source>s = %1</source>
        <translation>s = %1</translation>
    </message>
    <message>
        <source>not determined</source>
        <translation>求まりません</translation>
    </message>
    <message>
        <source>%1 pixels on a bound (%2)</source>
        <translation>制約にかかる画素: %1 (%2)</translation>
    </message>
    <message>
        <source>ratios %1</source>
        <translation>比率 %1</translation>
    </message>
    <message>
        <source>valence %1</source>
        <translation>価数 %1</translation>
    </message>
    <message>
        <source>t %1</source>
        <translation>t %1</translation>
    </message>
    <message>
        <source>s %1</source>
        <translation>s %1</translation>
    </message>
    <message>
        <source>d.o.f. %1</source>
        <translation>自由度 %1</translation>
    </message>
    <message>
        <source>condition %1</source>
        <translation>条件数 %1</translation>
    </message>
    <message>
        <source>held at 0: Ref. %1</source>
        <translation>0に固定: 標準%1</translation>
    </message>
    <message>
        <source>R factor %1</source>
        <translation>R因子 %1</translation>
    </message>
    <message>
        <source>reduced chi square %1</source>
        <translation>換算カイ二乗 %1</translation>
    </message>
</context>
<context>
    <name>EnergyAdviserDialog</name>
    <message>
        <source>Energies to measure</source>
        <translation>測定するエネルギー</translation>
    </message>
    <message>
        <source>Method</source>
        <translation>方法</translation>
    </message>
    <message>
        <source>Number of energies</source>
        <translation>エネルギーの数</translation>
    </message>
    <message>
        <source>Determine best</source>
        <translation>最もよく求める量</translation>
    </message>
    <message>
        <source>valence</source>
        <translation>価数</translation>
    </message>
    <message>
        <source>fractions</source>
        <translation>比率</translation>
    </message>
    <message>
        <source>Range [eV]</source>
        <translation>範囲 [eV]</translation>
    </message>
    <message>
        <source>to</source>
        <translation>～</translation>
    </message>
    <message>
        <source>At least apart [eV]</source>
        <translation>最小間隔 [eV]</translation>
    </message>
    <message>
        <source>Sample, in parts</source>
        <translation>試料の組成比</translation>
    </message>
    <message>
        <source>Amount</source>
        <translation>存在量</translation>
    </message>
    <message>
        <source>Noise s</source>
        <translation>ノイズ s</translation>
    </message>
    <message>
        <source>Advise</source>
        <translation>提案を計算</translation>
    </message>
    <message>
        <source>Use these</source>
        <translation>この値を使う</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>コピー</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
    </message>
    <message>
        <source>Upper end of the range [eV]</source>
        <translation>範囲の上端 [eV]</translation>
    </message>
    <message>
        <source>Present</source>
        <translation>現在</translation>
    </message>
    <message>
        <source>Proposed</source>
        <translation>提案</translation>
    </message>
    <message>
        <source>Expected standard deviations</source>
        <translation>予想される標準偏差</translation>
    </message>
    <message>
        <source>References, each by its edge jump</source>
        <translation>標準試料 (エッジジャンプで規格化)</translation>
    </message>
    <message>
        <source>Ref %1</source>
        <translation>標準%1</translation>
    </message>
    <message>
        <source>of the map</source>
        <translation>マップから</translation>
    </message>
    <message>
        <source>assumed</source>
        <translation>仮定値</translation>
    </message>
    <message>
        <source>Energy %1 [eV]</source>
        <translation>エネルギー%1 [eV]</translation>
    </message>
    <message>
        <source>Sigma of ratio %1</source>
        <translation>比率%1のσ</translation>
    </message>
    <message>
        <source>Sigma of valence</source>
        <translation>価数のσ</translation>
    </message>
    <message>
        <source>Sigma of amount</source>
        <translation>存在量のσ</translation>
    </message>
    <message>
        <source>Degrees of freedom</source>
        <translation>自由度</translation>
    </message>
    <message>
        <source>Condition number</source>
        <translation>条件数</translation>
    </message>
    <message>
        <source>Images</source>
        <translation>画像</translation>
    </message>
    <message>
        <source>Those in the rows were measured at other energies. Take or load new ones before you trust a map.</source>
        <translation>各行の画像は別のエネルギーで測定されたものです。マップを信頼する前に、新しい画像を測定するか読み込んで下さい。</translation>
    </message>
    <message>
        <source>Both</source>
        <translation>両方</translation>
    </message>
    <message>
        <source>No advice</source>
        <translation>提案できません</translation>
    </message>
    <message>
        <source>Changed: press Advise</source>
        <translation>変更あり: 「提案を計算」を押して下さい</translation>
    </message>
    <message>
        <source>Energy [eV]</source>
        <translation>エネルギー [eV]</translation>
    </message>
    <message>
        <source>mut / edge jump</source>
        <translation>mut / エッジジャンプ</translation>
    </message>
    <message>
        <source>Three points</source>
        <translation>3点法</translation>
    </message>
    <message>
        <source>Exact four points</source>
        <translation>4点法 (厳密解)</translation>
    </message>
    <message>
        <source>Four points, least squares</source>
        <translation>4点法 (最小二乗)</translation>
    </message>
    <message>
        <source>Non-equivalent, linear background</source>
        <translation>非等吸収点法、直線バックグラウンド</translation>
    </message>
    <message>
        <source>Non-equivalent, Victoreen background</source>
        <translation>非等吸収点法、Victoreenバックグラウンド</translation>
    </message>
    <message>
        <source>Range, distance, amount or noise is no number that can be used.</source>
        <translation>範囲、間隔、存在量、ノイズのどれかが使えない数値です。</translation>
    </message>
    <message>
        <source>Fewer than two references are loaded and in use.</source>
        <translation>読み込まれて使用中の標準試料が2つ未満です。</translation>
    </message>
    <message>
        <source>A reference in use has no spectrum, or no edge jump.</source>
        <translation>使用中の標準試料にスペクトルまたはエッジジャンプがありません。</translation>
    </message>
    <message>
        <source>The parts of the sample must be numbers of 0 or more.</source>
        <translation>試料の組成比は0以上の数値にして下さい。</translation>
    </message>
    <message>
        <source>All references have the same valence: determine fractions instead.</source>
        <translation>標準試料の価数がすべて同じです。「比率」を選んで下さい。</translation>
    </message>
    <message>
        <source>The chosen method does not take that many energies.</source>
        <translation>選ばれた方法ではこの数のエネルギーを使えません。</translation>
    </message>
    <message>
        <source>There are fewer energies than unknowns.</source>
        <translation>エネルギーの数が未知数より少なくなっています。</translation>
    </message>
    <message>
        <source>No V point is selected.</source>
        <translation>非等吸収点が選択されていません。</translation>
    </message>
    <message>
        <source>A row in use has no energy.</source>
        <translation>使用中の行にエネルギーがありません。</translation>
    </message>
    <message>
        <source>So many energies so far apart do not fit into the range.</source>
        <translation>この数と間隔のエネルギーは範囲に収まりません。</translation>
    </message>
    <message>
        <source>The four-points methods need energies at which the references are alike; the range has too few.</source>
        <translation>4点法には標準試料の吸収が等しいエネルギーが必要ですが、この範囲では足りません。</translation>
    </message>
    <message>
        <source>The references cannot be told apart at these energies.</source>
        <translation>これらのエネルギーでは標準試料を区別できません。</translation>
    </message>
    <message>
        <source>There are as many energies as unknowns (zero degrees of freedom): a fit goes through every point and tells nothing about the noise. One more energy would.</source>
        <translation>エネルギーの数が未知数と同じです (自由度0)。フィットはすべての点を通り、ノイズは分かりません。もう1点増やすと分かります。</translation>
    </message>
    <message>
        <source>A standard deviation is ten times that of the proposed energies, or more.</source>
        <translation>標準偏差が提案の10倍以上になる量があります。</translation>
    </message>
    <message>
        <source>The references differ at a point other than V: results will be off by more than the standard deviations say.</source>
        <translation>非等吸収点以外の点で標準試料の吸収が異なります。結果は標準偏差が示す以上にずれます。</translation>
    </message>
    <message>
        <source>The amount is hardly above its noise: the true standard deviations are larger.</source>
        <translation>存在量がノイズと同程度です。実際の標準偏差はこれより大きくなります。</translation>
    </message>
</context>
<context>
    <name>Manual</name>
    <message>
        <source>manual.html</source>
        <translation>manual.ja.html</translation>
    </message>
    <message>
        <source>The manual could not be opened; it should be here: %1</source>
        <translation>説明書を開けませんでした。あるはずの場所: %1</translation>
    </message>
</context>
<context>
    <name>RegionPanel</name>
    <message>
        <source>Regions</source>
        <translation>領域</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>削除</translation>
    </message>
    <message>
        <source>Table...</source>
        <translation>統計表...</translation>
    </message>
    <message>
        <source>Plots: regions alone</source>
        <translation>グラフは領域のみ</translation>
    </message>
    <message>
        <source>Rectangle</source>
        <translation>長方形</translation>
    </message>
    <message>
        <source>Polygon</source>
        <translation>多角形</translation>
    </message>
    <message>
        <source>There are %1 regions; more cannot be.</source>
        <translation>領域は%1個までです。</translation>
    </message>
    <message>
        <source>No pixel has its centre inside.</source>
        <translation>中心が内側にある画素がありません。</translation>
    </message>
    <message>
        <source>Drag on the map; click: select</source>
        <translation>マップ上でドラッグ、クリックで選択</translation>
    </message>
    <message>
        <source>Click the corners; Enter: end</source>
        <translation>頂点をクリック、Enterで終了</translation>
    </message>
</context>
<context>
    <name>RegionTable</name>
    <message>
        <source>Statistics of the regions</source>
        <translation>領域の統計</translation>
    </message>
    <message>
        <source>Region</source>
        <translation>領域</translation>
    </message>
    <message>
        <source>Map</source>
        <translation>マップ</translation>
    </message>
    <message>
        <source>Mean</source>
        <translation>平均</translation>
    </message>
    <message>
        <source>Std. dev.</source>
        <translation>標準偏差</translation>
    </message>
    <message>
        <source>Median</source>
        <translation>中央値</translation>
    </message>
    <message>
        <source>Finite pixels</source>
        <translation>有限の画素</translation>
    </message>
    <message>
        <source>Pixels</source>
        <translation>画素</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>コピー</translation>
    </message>
    <message>
        <source>CSV...</source>
        <translation>CSV...</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
    </message>
</context>
<context>
    <name>ExportMenu</name>
    <message>
        <source>Save as PNG...</source>
        <translation>PNGで保存...</translation>
    </message>
    <message>
        <source>Save as PNG, 2 times as fine...</source>
        <translation>PNGで保存 (2倍の解像度)...</translation>
    </message>
    <message>
        <source>Save as PNG, 4 times as fine...</source>
        <translation>PNGで保存 (4倍の解像度)...</translation>
    </message>
    <message>
        <source>Save as PDF...</source>
        <translation>PDFで保存...</translation>
    </message>
    <message>
        <source>Copy picture</source>
        <translation>画像をコピー</translation>
    </message>
    <message>
        <source>Save curves as CSV...</source>
        <translation>曲線をCSVで保存...</translation>
    </message>
    <message>
        <source>Save values as CSV...</source>
        <translation>値をCSVで保存...</translation>
    </message>
    <message>
        <source>Save values as a processed map...</source>
        <translation>値を処理済みマップとして保存...</translation>
    </message>
    <message>
        <source>Written: %1</source>
        <translation>書き出しました: %1</translation>
    </message>
    <message>
        <source>Can't write %1</source>
        <translation>%1 に書き出せません</translation>
    </message>
</context>
<context>
    <name>PanelUndo</name>
    <message>
        <source>reference</source>
        <translation>標準試料</translation>
    </message>
    <message>
        <source>target</source>
        <translation>解析対象</translation>
    </message>
    <message>
        <source>energy points</source>
        <translation>エネルギー点</translation>
    </message>
    <message>
        <source>edge</source>
        <translation>吸収端</translation>
    </message>
    <message>
        <source>method</source>
        <translation>解析法</translation>
    </message>
    <message>
        <source>histogram</source>
        <translation>ヒストグラム</translation>
    </message>
    <message>
        <source>result file</source>
        <translation>結果ファイル</translation>
    </message>
    <message>
        <source>precision and bounds</source>
        <translation>精度と制約</translation>
    </message>
    <message>
        <source>view</source>
        <translation>表示</translation>
    </message>
    <message>
        <source>regions</source>
        <translation>領域</translation>
    </message>
    <message>
        <source>several inputs</source>
        <translation>複数の入力</translation>
    </message>
    <message>
        <source>Undo: %1</source>
        <translation>元に戻す: %1</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>元に戻す</translation>
    </message>
    <message>
        <source>Redo: %1</source>
        <translation>やり直す: %1</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>やり直す</translation>
    </message>
</context>
<context>
    <name>SessionKeeper</name>
    <message>
        <source>No session was opened or saved yet</source>
        <translation>開いた、または保存したセッションはまだありません</translation>
    </message>
</context>
<context>
    <name>AccessibleNames</name>
    <message>
        <source>file</source>
        <translation>ファイル</translation>
    </message>
    <message>
        <source>select a file</source>
        <translation>ファイルを選択</translation>
    </message>
    <message>
        <source>clear the file</source>
        <translation>ファイルを外す</translation>
    </message>
    <message>
        <source>energy shift [eV]</source>
        <translation>エネルギーシフト [eV]</translation>
    </message>
    <message>
        <source>use</source>
        <translation>使用</translation>
    </message>
    <message>
        <source>valence</source>
        <translation>価数</translation>
    </message>
    <message>
        <source>ratio, result</source>
        <translation>比率の結果</translation>
    </message>
    <message>
        <source>dMut, result</source>
        <translation>Δμtの結果</translation>
    </message>
    <message>
        <source>non-equivalent point</source>
        <translation>非等吸収点</translation>
    </message>
    <message>
        <source>bound of the linear combination fit</source>
        <translation>線形結合フィットの範囲端</translation>
    </message>
    <message>
        <source>energy [eV]</source>
        <translation>エネルギー [eV]</translation>
    </message>
    <message>
        <source>mut of reference 1</source>
        <translation>標準試料1のμt</translation>
    </message>
    <message>
        <source>mut of reference 2</source>
        <translation>標準試料2のμt</translation>
    </message>
    <message>
        <source>mut of reference 3</source>
        <translation>標準試料3のμt</translation>
    </message>
    <message>
        <source>mut of reference 4</source>
        <translation>標準試料4のμt</translation>
    </message>
    <message>
        <source>mut of the target</source>
        <translation>解析対象のμt</translation>
    </message>
    <message>
        <source>show as data map</source>
        <translation>データマップに表示</translation>
    </message>
    <message>
        <source>pick the energy in the graph</source>
        <translation>グラフでエネルギーを指定</translation>
    </message>
    <message>
        <source>graph</source>
        <translation>グラフ</translation>
    </message>
    <message>
        <source>own window or back</source>
        <translation>別ウィンドウへ着脱</translation>
    </message>
    <message>
        <source>x of the pointer</source>
        <translation>ポインタのx</translation>
    </message>
    <message>
        <source>y of the pointer</source>
        <translation>ポインタのy</translation>
    </message>
    <message>
        <source>surface</source>
        <translation>表示面</translation>
    </message>
    <message>
        <source>upper limit of the colours</source>
        <translation>色の上限値</translation>
    </message>
    <message>
        <source>lower limit of the colours</source>
        <translation>色の下限値</translation>
    </message>
    <message>
        <source>colour bar</source>
        <translation>カラーバー</translation>
    </message>
    <message>
        <source>value at the pointer</source>
        <translation>ポインタ位置の値</translation>
    </message>
    <message>
        <source>Target</source>
        <translation>解析対象</translation>
    </message>
    <message>
        <source>Further spectra</source>
        <translation>追加表示するスペクトル</translation>
    </message>
    <message>
        <source>Result file</source>
        <translation>結果ファイル</translation>
    </message>
    <message>
        <source>Inputs</source>
        <translation>入力欄</translation>
    </message>
    <message>
        <source>Further spectra, list</source>
        <translation>追加表示するスペクトルの一覧</translation>
    </message>
    <message>
        <source>Further spectra, remove the selected one</source>
        <translation>選択した追加スペクトルを除外</translation>
    </message>
    <message>
        <source>Edge energy [eV]</source>
        <translation>吸収端エネルギー [eV]</translation>
    </message>
    <message>
        <source>End of the pre-edge range [eV]</source>
        <translation>プレエッジ範囲の終点 [eV]</translation>
    </message>
    <message>
        <source>Start of the post-edge range [eV]</source>
        <translation>ポストエッジ範囲の始点 [eV]</translation>
    </message>
    <message>
        <source>References, subtract the pre-edge line</source>
        <translation>標準試料からプレエッジ線を差し引く</translation>
    </message>
    <message>
        <source>References, subtract the post-edge line</source>
        <translation>標準試料からポストエッジ線を差し引く</translation>
    </message>
    <message>
        <source>Target, subtract the pre-edge line</source>
        <translation>解析対象からプレエッジ線を差し引く</translation>
    </message>
    <message>
        <source>Target, subtract the post-edge line</source>
        <translation>解析対象からポストエッジ線を差し引く</translation>
    </message>
    <message>
        <source>Histogram of the valence, from</source>
        <translation>価数ヒストグラムの下限</translation>
    </message>
    <message>
        <source>Histogram of the valence, to</source>
        <translation>価数ヒストグラムの上限</translation>
    </message>
    <message>
        <source>Histogram of the valence, boxes</source>
        <translation>価数ヒストグラムの区間数</translation>
    </message>
    <message>
        <source>Histogram of the valence, automatic limits</source>
        <translation>価数ヒストグラムの範囲を自動設定</translation>
    </message>
    <message>
        <source>Histogram of the amount, from</source>
        <translation>存在量ヒストグラムの下限</translation>
    </message>
    <message>
        <source>Histogram of the amount, to</source>
        <translation>存在量ヒストグラムの上限</translation>
    </message>
    <message>
        <source>Histogram of the amount, boxes</source>
        <translation>存在量ヒストグラムの区間数</translation>
    </message>
    <message>
        <source>Histogram of the amount, automatic limits</source>
        <translation>存在量ヒストグラムの範囲を自動設定</translation>
    </message>
    <message>
        <source>Calculate the target</source>
        <translation>解析対象を計算</translation>
    </message>
    <message>
        <source>Target, result</source>
        <translation>解析対象の結果</translation>
    </message>
    <message>
        <source>Target, dMut, result</source>
        <translation>解析対象のΔμtの結果</translation>
    </message>
    <message>
        <source>Linear combination fit of the target</source>
        <translation>解析対象の線形結合フィット</translation>
    </message>
    <message>
        <source>Linear combination fit, result</source>
        <translation>線形結合フィットの結果</translation>
    </message>
    <message>
        <source>Calculate the maps</source>
        <translation>マップを計算</translation>
    </message>
    <message>
        <source>Write the result file</source>
        <translation>結果ファイルを書き出す</translation>
    </message>
    <message>
        <source>Border of the inputs</source>
        <translation>入力欄の境界</translation>
    </message>
    <message>
        <source>Border between maps and graphs</source>
        <translation>マップとグラフの境界</translation>
    </message>
    <message>
        <source>Border between the maps</source>
        <translation>マップ間の境界</translation>
    </message>
    <message>
        <source>Recent sessions</source>
        <translation>最近のセッション</translation>
    </message>
    <message>
        <source>Manual</source>
        <translation>マニュアル</translation>
    </message>
    <message>
        <source>Messages</source>
        <translation>メッセージ</translation>
    </message>
    <message>
        <source>File of the standard deviations</source>
        <translation>標準偏差のファイル</translation>
    </message>
    <message>
        <source>Noise from</source>
        <translation>ノイズの求め方</translation>
    </message>
    <message>
        <source>Standard deviation of one absorption</source>
        <translation>吸収1点の標準偏差</translation>
    </message>
    <message>
        <source>Bounds of the non-equivalent method</source>
        <translation>非等吸収点法の制限</translation>
    </message>
    <message>
        <source>Bounds of the linear combination fit</source>
        <translation>線形結合フィットの制限</translation>
    </message>
    <message>
        <source>Greatest standard deviation shown</source>
        <translation>表示する標準偏差の上限</translation>
    </message>
    <message>
        <source>Target, standard deviations</source>
        <translation>解析対象の標準偏差</translation>
    </message>
    <message>
        <source>Linear combination fit, standard deviations</source>
        <translation>線形結合フィットの標準偏差</translation>
    </message>
    <message>
        <source>What to determine best</source>
        <translation>最も精度よく求める量</translation>
    </message>
    <message>
        <source>Shape of a new region</source>
        <translation>新しい領域の形</translation>
    </message>
    <message>
        <source>Statistics of the regions</source>
        <translation>領域の統計</translation>
    </message>
    <message>
        <source>Fit of the pixel, graph</source>
        <translation>画素のフィットのグラフ</translation>
    </message>
    <message>
        <source>Fit of the pixel, numbers</source>
        <translation>画素のフィットの数値</translation>
    </message>
    <message>
        <source>Result map</source>
        <translation>結果マップ</translation>
    </message>
    <message>
        <source>Histogram</source>
        <translation>ヒストグラム</translation>
    </message>
    <message>
        <source>Recorded column</source>
        <translation>記録する列</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1、%2</translation>
    </message>
    <message>
        <source>Reference %1</source>
        <translation>標準試料 %1</translation>
    </message>
    <message>
        <source>Energy point %1</source>
        <translation>エネルギー点 %1</translation>
    </message>
</context>
</TS>
