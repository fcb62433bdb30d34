import java.io.BufferedReader;
import java.io.File;
import java.io.IOException;
import java.io.InputStreamReader;
import java.net.URLDecoder;
import java.net.URLEncoder;
import java.nio.charset.StandardCharsets;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.stream.Collectors;
import org.jpmml.evaluator.Evaluator;
import org.jpmml.evaluator.LoadingModelEvaluatorBuilder;

// Usage: java -cp JARS EvaluatePmml.java. Evaluates models for records, both named on standard
// input, and prints the values of their output fields. A request is a line with a PMML file and a
// number of records, a line with the names of the columns, and as many records. The fields of a
// line have a tab between; that of a record is empty for a missing value, else its type (d for
// double, s for string) and its text. Texts are in URL encoding.
class EvaluatePmml {
  static String decode(String text) {
    return URLDecoder.decode(text, StandardCharsets.UTF_8);
  }

  static Object read(String field) {
    if (field.isEmpty()) return null;
    final String text = decode(field.substring(1));
    return field.charAt(0) == 'd' ? (Object) Double.valueOf(text) : text;
  }

  static String write(Object value) {
    return value == null ? "" : "=" + URLEncoder.encode(value.toString(), StandardCharsets.UTF_8);
  }

  static String readLine(BufferedReader in) throws IOException {
    final String line = in.readLine();
    if (line == null) throw new IOException("a request ends early");
    return line;
  }

  static void answer(BufferedReader in, String file, int count) throws Exception {
    final Evaluator evaluator = new LoadingModelEvaluatorBuilder().load(new File(file)).build();
    final List<String> results = evaluator.getOutputFields().stream()
        .map(field -> field.getName()).collect(Collectors.toList());
    final String[] names = readLine(in).split("\t");
    final StringBuilder out = new StringBuilder();
    for (int record = 0; record < count; ++record) {
      final String[] fields = readLine(in).split("\t", -1);
      final Map<String, Object> values = new LinkedHashMap<>();
      for (int i = 0; i < fields.length; ++i) values.put(decode(names[i]), read(fields[i]));
      final Map<String, ?> found = evaluator.evaluate(values);
      out.append(results.stream().map(name -> write(found.get(name)))
          .collect(Collectors.joining("\t"))).append('\n');
    }
    System.out.print(out);
    System.out.flush();
  }

  public static void main(String[] unused) throws Exception {
    final BufferedReader in =
        new BufferedReader(new InputStreamReader(System.in, StandardCharsets.UTF_8));
    for (String line = in.readLine(); line != null; line = in.readLine()) {
      final String[] request = line.split("\t");
      answer(in, request[0], Integer.parseInt(request[1]));
    }
  }
}
